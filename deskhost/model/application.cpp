#include "deskhost/model/application.h"

#include "deskhost/model/events.h"

namespace deskhost {

using automation::Args;
using automation::Error;
using automation::Failure;
using automation::id;
using automation::Member;
using automation::Value;

namespace {

constexpr std::int32_t first_command_id = 32001;

}  // namespace

Value AddIn::get(Member member, Args args) {
  if (member.id() != id("Cookie")) return DeskObject::get(member, args);
  return cookie;
}

Value AddIn::call(Member member, Args args) {
  if (member.id() != id("AddCommand")) return DeskObject::call(member, args);
  if (argument(args, 0).to_int32() != cookie) throw Failure(Error::invalid_argument);
  const auto command_id = first_command_id + static_cast<std::int32_t>(commands.size());
  commands.push_back({argument(args, 1).to_int32(), argument(args, 2).to_text(), command_id});
  return command_id;
}

AddIn::State AddIn::raise_command_ui(std::int32_t event_cookie, std::int32_t number) const {
  const State off;
  std::vector<Value> args{event_cookie, number, off.enabled, off.checked};
  raise_reported(*desk_, hub_, "OnCommandUI", args);
  return {args[2].to_bool(), args[3].to_bool()};
}

void AddIn::raise_command(std::int32_t event_cookie, std::int32_t number) const {
  std::vector<Value> args{event_cookie, number};
  raise_reported(*desk_, hub_, "OnCommand", args);
}

Value Configuration::get(Member member, Args args) {
  if (member.id() != id("Language")) return DeskObject::get(member, args);
  return language;
}

Application::Application(DeskRef desk, const ApplicationOptions& options)
    : add_in(std::make_shared<AddIn>(desk)),
      tool_bars(std::make_shared<ToolBars>()),
      menus(std::make_shared<Menus>(options.stale_menu_entry)),
      configuration(std::make_shared<Configuration>(options.language)),
      desk_(std::move(desk)),
      major_version_(options.major_version) {}

Value Application::get(Member member, Args args) {
  switch (member.id()) {
    case id("Document"):
      return Value(document);
    case id("AddIn"):
      return Value(add_in);
    case id("ToolBars"):
      return Value(tool_bars);
    case id("Menus"):
      return Value(menus);
    case id("Configuration"):
      return Value(configuration);
    case id("MajorVersion"):
      return major_version_;
    default:
      return DeskObject::get(member, args);
  }
}

void Application::raise(Member event, std::vector<Value> args) const {
  raise_reported(*desk_, hub_, event, args);
}

}  // namespace deskhost
