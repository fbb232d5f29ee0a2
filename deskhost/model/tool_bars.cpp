#include "deskhost/model/tool_bars.h"

#include <algorithm>

#include "deskhost/model/index.h"
#include "platform/files.h"

namespace deskhost {

using automation::Args;
using automation::Error;
using automation::Failure;
using automation::id;
using automation::Member;
using automation::Value;

std::string ToolBarButton::trace_name() const {
  return "ToolBarButton(" + std::to_string(position_) + ")";
}

Value ToolBarButton::get(Member member, Args args) {
  switch (member.id()) {
    case id("Visible"):
      return visible;
    case id("ScreenTip"):
      return screen_tip;
    case id("HelpString"):
      return help_string;
    default:
      return DeskObject::get(member, args);
  }
}

void ToolBarButton::put(Member member, Args args, const Value& value) {
  switch (member.id()) {
    case id("Visible"):
      visible = value.to_bool();
      return;
    case id("ScreenTip"):
      screen_tip = value.to_text();
      return;
    case id("HelpString"):
      help_string = value.to_text();
      return;
    default:
      DeskObject::put(member, args, value);
  }
}

Value ToolBarButton::call(Member member, Args args) {
  if (member.id() != id("SetBitmaps")) return DeskObject::call(member, args);
  std::string file16 = argument(args, 0).to_text();
  std::string file32 = argument(args, 1).to_text();
  for (const std::string& file : {file16, file32}) {
    if (!platform::file_exists(file)) throw Failure(Error::file_not_found);
  }
  bitmap16 = std::move(file16);
  bitmap32 = std::move(file32);
  return {};
}

Value ToolBar::get(Member member, Args args) {
  switch (member.id()) {
    case id("Name"):
      return name;
    case id("Visible"):
      return visible;
    case id("Position"):
      return position;
    case id("Top"):
      return top;
    case id("Left"):
      return left;
    case id("Count"):
      return static_cast<std::int32_t>(buttons.size());
    case id("Item"):
      return Value(buttons[index_of(argument(args, 0), buttons.size())]);
    default:
      return DeskObject::get(member, args);
  }
}

void ToolBar::put(Member member, Args args, const Value& value) {
  switch (member.id()) {
    case id("Visible"):
      visible = value.to_bool();
      return;
    case id("Position"):
      position = value.to_int32();
      return;
    case id("Top"):
      top = value.to_int32();
      return;
    case id("Left"):
      left = value.to_int32();
      return;
    default:
      DeskObject::put(member, args, value);
  }
}

Value ToolBar::call(Member member, Args args) {
  if (member.id() != id("Add")) return DeskObject::call(member, args);
  static_cast<void>(argument(args, 0).to_int32());  // the kind: all are buttons, but it has to be a number
  buttons.push_back(std::make_shared<ToolBarButton>(buttons.size() + 1, argument(args, 1).to_text(),
                                                    argument(args, 2).to_int32()));
  return Value(buttons.back());
}

Value ToolBars::get(Member member, Args args) {
  switch (member.id()) {
    case id("Count"):
      return static_cast<std::int32_t>(bars.size());
    case id("Item"):
      return Value(bars[find(argument(args, 0))]);
    default:
      return DeskObject::get(member, args);
  }
}

Value ToolBars::call(Member member, Args args) {
  switch (member.id()) {
    case id("Add"):
      bars.push_back(std::make_shared<ToolBar>(argument(args, 0).to_text()));
      return Value(bars.back());
    case id("Remove"):
      bars.erase(bars.begin() + static_cast<std::ptrdiff_t>(find(argument(args, 0))));
      return {};
    default:
      return DeskObject::call(member, args);
  }
}

std::size_t ToolBars::find(const Value& name_or_position) const {
  const std::string* name = name_or_position.text();
  if (!name) return index_of(name_or_position, bars.size());
  const auto found = std::ranges::find_if(bars, [&](const auto& bar) { return bar->name == *name; });
  if (found == bars.end()) throw Failure(Error::subscript_out_of_range);
  return static_cast<std::size_t>(found - bars.begin());
}

}  // namespace deskhost
