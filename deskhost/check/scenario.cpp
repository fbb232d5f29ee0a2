#include "deskhost/check/scenario.h"

#include <array>

#include "deskhost/check/zones.h"
#include "deskhost/model/document.h"

namespace deskhost::check {
namespace {

constexpr const char* turret = "turret.json";
constexpr const char* mill = "mill.json";

void nothing(Sitting& /*sitting*/) {}
template <std::int32_t number>
void command(Sitting& sitting) {
  sitting.session().command(number);
}
void connect(Sitting& sitting) {
  sitting.session().connect();
}
void import_before(Sitting& sitting) {
  sitting.session().command(1);
}
void change(Sitting& sitting) {
  const std::string id = sitting.session().document()->tools().at(0)->value("ToolID").to_text();
  sitting.session().modify(id, {{"ToolLength", "85"}});
}
void ask_for_state(Sitting& sitting) {
  static_cast<void>(sitting.session().command_ui(1));
}

constexpr auto imports = std::to_array<Scenario>({
    {"import-turret", turret, "", nothing, command<1>, zones::import},
    {"import-mill", mill, "OutputMSG=1\r\n", nothing, command<1>, zones::import},
    {"import-again", turret, "LathToolAlwaysToTip=1\r\n", import_before, command<1>, zones::import},
    {"import-new-base", turret, "", nothing, command<1>, zones::import, "", true},
});

constexpr auto others = std::to_array<Scenario>({
    {"connect", turret, "", nothing, connect, zones::connection, "OnConnection"},
    {"open", turret, "", nothing, [](Sitting& s) { s.open("turret.json"); }, zones::document_event},
    {"close", turret, "", nothing, [](Sitting& s) { s.session().close(); }, zones::document_event},
    {"toolbar", turret, "", nothing, [](Sitting& s) { s.session().command(0); },
     [](const std::vector<Call>& calls) {
       std::vector<Zone> all = zones::all_handed_on(calls);
       for (std::size_t i = 1; i < calls.size(); ++i) {
         if (calls[i - 1].is_event && calls[i - 1].member == "OnCommandUI") all[i] = Zone::skipped;
       }
       return all;
     }},
    {"export-stations", turret, "", nothing, command<2>, zones::export_with_material},
    {"export-document", turret, "ToolOutputorderByLatheStation=0\r\nDeleteUnusedTools=0\r\n", nothing,
     command<2>, zones::export_with_material},
    {"export-operations", mill, "", nothing, command<2>, zones::export_by_operations},
    {"export-mill-document", mill, "ToolOutputorderByMillOperation=0\r\n", nothing, command<2>,
     zones::export_by_tools},
    {"modify-turret", turret, "", nothing, change, zones::all_skipped},
    {"modify-mill", mill, "", nothing, change, zones::all_skipped},
    {"deferred-step", turret, "", change, ask_for_state, zones::all_skipped},
    {"delete", turret, "", nothing, [](Sitting& s) { s.session().remove("Old turning#100"); },
     zones::all_skipped},
    {"simulate", turret, "", nothing, [](Sitting& s) { s.session().simulate(); }, zones::all_handed_on},
    {"shutdown", turret, "", nothing, [](Sitting& s) { s.session().shutdown(); }, zones::begin_shutdown,
     "OnBeginShutdown"},
    {"disconnect", turret, "", nothing, [](Sitting& s) { s.session().disconnect(); }, zones::all_skipped},
    {"release", turret, "", nothing, [](Sitting& s) { s.session().release(); }, zones::all_skipped},
});

}  // namespace

std::span<const Scenario> import_scenarios() {
  return imports;
}
std::span<const Scenario> other_scenarios() {
  return others;
}

}  // namespace deskhost::check
