#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "automation/event_hub.h"
#include "deskhost/model/desk_object.h"
#include "deskhost/model/menus.h"
#include "deskhost/model/tool_bars.h"

namespace deskhost {

/// A command that the add-in registered.
struct Command {
  std::int32_t number = 0;
  std::string name;
  std::int32_t id = 0;
};

/// The host's side of the one add-in. Members: Cookie, AddCommand(cookie, number, name), which gives the
/// command's id and refuses a cookie that isn't the add-in's.
class AddIn final : public DeskObject {
 public:
  static constexpr std::int32_t cookie = 7301;

  explicit AddIn(DeskRef desk) : desk_(std::move(desk)) {}

  [[nodiscard]] std::string trace_name() const override { return "AddIn"; }
  automation::Value get(automation::Member member, automation::Args args) override;
  automation::Value call(automation::Member member, automation::Args args) override;
  automation::Events* events() noexcept override { return &hub_; }

  struct State {
    bool enabled = false;
    bool checked = false;
  };
  /// Asks for the state of a command; it stays off where nobody answers.
  [[nodiscard]] State raise_command_ui(std::int32_t event_cookie, std::int32_t number) const;
  void raise_command(std::int32_t event_cookie, std::int32_t number) const;

  std::vector<Command> commands;

 private:
  DeskRef desk_;
  automation::EventHub hub_;
};

/// Members: Language.
class Configuration final : public DeskObject {
 public:
  explicit Configuration(std::int32_t initial_language) : language(initial_language) {}

  [[nodiscard]] std::string trace_name() const override { return "Configuration"; }
  automation::Value get(automation::Member member, automation::Args args) override;

  std::int32_t language;
};

struct ApplicationOptions {
  std::int32_t language = 0;
  std::int32_t major_version = 19;
  /// See `Menus`.
  std::string stale_menu_entry;
};

/// The host. Members: Document, AddIn, ToolBars, Menus, Configuration, MajorVersion.
class Application final : public DeskObject {
 public:
  Application(DeskRef desk, const ApplicationOptions& options);

  [[nodiscard]] std::string trace_name() const override { return "Application"; }
  automation::Value get(automation::Member member, automation::Args args) override;
  automation::Events* events() noexcept override { return &hub_; }

  /// Raises one of the application's events: AfterDocumentOpen(FileName), AfterNewDocumentOpen(),
  /// AfterTemplateOpen(FileName), AfterDocumentClose().
  void raise(automation::Member event, std::vector<automation::Value> args) const;

  /// The active document, or null.
  std::shared_ptr<DeskObject> document;
  const std::shared_ptr<AddIn> add_in;
  const std::shared_ptr<ToolBars> tool_bars;
  const std::shared_ptr<Menus> menus;
  const std::shared_ptr<Configuration> configuration;

 private:
  DeskRef desk_;
  std::int32_t major_version_;
  automation::EventHub hub_;
};

}  // namespace deskhost
