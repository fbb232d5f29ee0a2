#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "deskhost/session/gate.h"

namespace deskhost {

class Application;
class Document;

/// An action that can't be carried out as it was asked for: what and where, and what to do instead. Nothing
/// has been raised or changed.
class WrongUse : public std::runtime_error {
 public:
  WrongUse(const std::string& what, std::string hint_text)
      : std::runtime_error(what), hint(std::move(hint_text)) {}
  std::string hint;
};

/// NAME=VALUE, as the user typed it.
using Assignment = std::pair<std::string, std::string>;

/// Throws WrongUse for what a toolbar doesn't have or refuses.
void check_placement(const std::vector<Assignment>& changes);

struct SessionOptions {
  /// Makes the add-in's Connect object; empty: the host runs alone.
  std::function<automation::Ref()> make_addin;
  std::int32_t language = 0;
  std::int32_t major_version = 19;
  bool stale_menu = false;
  GateOptions gate;
  /// Hears every failure that the add-in hands back: the event's or the connection call's name, and its text.
  std::function<void(std::string_view event, std::string_view text)> on_failure;
  /// Hears of what is odd in a document that is opened: what and where.
  std::function<void(const std::string& text)> on_doubt;
};

/// One session of the host: the add-in's connection, the active document, the user. Classes are offered to
/// components from the making of the session to its end; there is one session at a time.
class Session {
 public:
  explicit Session(SessionOptions options);
  /// Drops what is left without events or connection calls; `take_down` comes before.
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// Offers a further class to the add-in by the name behind the last "."; a later offer replaces an earlier
  /// one.
  void offer(const std::string& name, std::function<automation::Ref()> maker);

  /// Makes the add-in and connects it; nothing where it is connected already. A failing connection call is
  /// reported and the add-in counts as connected. Throws Failure where the add-in can't be made.
  void connect();
  /// One step of the take-down each; nothing where the step was done or there is no add-in.
  void shutdown();
  void disconnect();
  void release();
  /// The steps that are left, in order; then the open document is dropped without events.
  void take_down();

  /// Makes a document the active one without an event; only before the connection.
  void preload(const std::string& file);
  /// Close the open document, load, raise the event. A file that can't be read is a DocumentFileError, and
  /// the open document stays.
  void open(const std::string& file);
  void open_new(const std::string& file);
  void open_template(const std::string& file);
  void close();

  /// OnCommandUI and OnCommand.
  void command(std::int32_t number);
  /// The same with a cookie that isn't the add-in's.
  void foreign(std::int32_t number);
  /// The enabled state of a command.
  bool command_ui(std::int32_t number);

  void modify(const std::string& tool_id, const std::vector<Assignment>& parameters);
  void remove(const std::string& tool_id);
  void simulate();
  /// The user moves the add-in's toolbar: Visible (true, false), Position, Top, Left.
  void toolbar(const std::vector<Assignment>& changes);
  void language(std::int32_t number);

  void save(const std::string& file);

  [[nodiscard]] Application& application();
  /// The active document, or null.
  [[nodiscard]] std::shared_ptr<Document> document() const;
  /// The add-in as connected, or null: for its public operations.
  [[nodiscard]] automation::Ref addin() const;
  [[nodiscard]] Gate& gate();
  [[nodiscard]] std::size_t failures() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace deskhost
