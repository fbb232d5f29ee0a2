#include "deskhost/console/user_interface_dump.h"

#include <nlohmann/json.hpp>
#include <ostream>

#include "deskhost/model/application.h"

namespace deskhost {
namespace {

using Json = nlohmann::ordered_json;

Json json_of(const ToolBar& bar) {
  Json buttons = Json::array();
  for (const auto& button : bar.buttons) {
    buttons.push_back({{"Name", button->name},
                       {"Command", button->command},
                       {"Visible", button->visible},
                       {"ScreenTip", button->screen_tip},
                       {"HelpString", button->help_string},
                       {"Bitmap16", button->bitmap16},
                       {"Bitmap32", button->bitmap32}});
  }
  return {{"Name", bar.name}, {"Visible", bar.visible}, {"Position", bar.position},
          {"Top", bar.top},   {"Left", bar.left},       {"Buttons", std::move(buttons)}};
}

}  // namespace

void dump_user_interface(const Application& application, std::ostream& out) {
  Json commands = Json::array();
  for (const Command& command : application.add_in->commands) {
    commands.push_back({{"Number", command.number}, {"Name", command.name}, {"Id", command.id}});
  }
  Json menu = Json::array();
  for (const MenuEntry& entry : application.menus->entries()) {
    menu.push_back({{"Kind", entry.kind}, {"Caption", entry.caption}, {"Command", entry.command}});
  }
  Json bars = Json::array();
  for (const auto& bar : application.tool_bars->bars) bars.push_back(json_of(*bar));
  const Json dump = {
      {"Commands", std::move(commands)}, {"Menu", std::move(menu)}, {"ToolBars", std::move(bars)}};
  out << dump.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace deskhost
