#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "deskhost/model/desk_object.h"

namespace deskhost {

/// A button of a toolbar. Members: Visible, ScreenTip, HelpString, SetBitmaps(file of 16, file of 32), which
/// fails for a file that doesn't exist.
class ToolBarButton final : public DeskObject {
 public:
  ToolBarButton(std::size_t position, std::string name, std::int32_t command)
      : name(std::move(name)), command(command), position_(position) {}

  [[nodiscard]] std::string trace_name() const override;
  automation::Value get(automation::Member member, automation::Args args) override;
  void put(automation::Member member, automation::Args args, const automation::Value& value) override;
  automation::Value call(automation::Member member, automation::Args args) override;

  std::string name;
  std::int32_t command;
  bool visible = false;
  std::string screen_tip, help_string;
  std::string bitmap16, bitmap32;

 private:
  std::size_t position_;
};

/// A toolbar, hidden at first. Members: Visible, Position, Top, Left, Add(kind, name, command id, [before]),
/// Count, Item(position from 1).
class ToolBar final : public DeskObject {
 public:
  explicit ToolBar(std::string bar_name) : name(std::move(bar_name)) {}

  [[nodiscard]] std::string trace_name() const override { return "ToolBar"; }
  automation::Value get(automation::Member member, automation::Args args) override;
  void put(automation::Member member, automation::Args args, const automation::Value& value) override;
  automation::Value call(automation::Member member, automation::Args args) override;

  std::string name;
  bool visible = false;
  std::int32_t position = 0, top = 0, left = 0;
  std::vector<std::shared_ptr<ToolBarButton>> buttons;
};

/// Members: Count, Item(position or name), Add(name), Remove(name); an absent toolbar fails.
class ToolBars final : public DeskObject {
 public:
  [[nodiscard]] std::string trace_name() const override { return "ToolBars"; }
  automation::Value get(automation::Member member, automation::Args args) override;
  automation::Value call(automation::Member member, automation::Args args) override;

  /// In the order of their making.
  std::vector<std::shared_ptr<ToolBar>> bars;

 private:
  [[nodiscard]] std::size_t find(const automation::Value& name_or_position) const;
};

}  // namespace deskhost
