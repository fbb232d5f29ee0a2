#include "deskhost/check/leeway.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace deskhost::check {
namespace {

/// So many calls of a statement and those that ask again for what it didn't get.
constexpr std::size_t at_once = 8;

/// How far behind a call in a zone of skipped failures a run that is no import may differ from the sound one,
/// beyond what needs the call's result.
enum class Reach { statement, own, event };

struct ReachRow {
  std::string_view on;  // the beginning of the object's name
  std::string_view member;
  Reach reach;
};

// Tests, which count as passed when they fail, and calls whose plain result leads the next statements. The
// first row that fits counts.
constexpr auto reaches = std::to_array<ReachRow>({
    {"ToolBar", "Add", Reach::event},  // buttons go by their number
    {"MenuItem", "", Reach::own},
    {"Application", "Configuration", Reach::own},
    {"Configuration", "", Reach::own},
    {"Application", "Document", Reach::event},
    {"Document", "MachineType", Reach::event},
    {"Document", "MachineSetup", Reach::event},
    {"Document", "MillSetup", Reach::event},
    {"Document", "UnitSystem", Reach::own},
    {"Document", "IsToolUsed", Reach::event},
    {"MachineSetup", "Turrets", Reach::event},
    {"MillSetup", "", Reach::event},
    {"Turret", "", Reach::event},
    {"Tools", "", Reach::event},
    {"Operation", "", Reach::own},
    {"Tool(", "Style", Reach::event},
    {"Tool(", "Name", Reach::event},
    {"Tool(", "Number", Reach::event},
    {"Tool(", "Turret", Reach::event},
    {"Tool(", "Station", Reach::event},
    {"Tool(", "Count", Reach::event},
    {"Tool(", "Kind", Reach::event},
    {"Tool(", "ToolShift", Reach::event},
});

bool told(const ReachRow& row, const Call& call) {
  return call.on.starts_with(row.on) && call.member.starts_with(row.member);
}

/// Properties are looked up, made anew where their type can't be told, and added where there are none.
bool is_property(const Call& call) {
  return call.on.find("CustomProperties") != std::string::npos || call.member == "CustomProperties";
}

/// What the steps behind a tool's parameters go by.
bool leads(const Call& call) {
  constexpr std::array<std::string_view, 7> names{"ToolStyle",     "Orientation", "LatheToolOrientation",
                                                  "TurretID",      "StationID",   "ToolNumber",
                                                  "CustomSetting6"};
  return is_property(call) ||
         std::ranges::any_of(names, [&](std::string_view name) { return is_parameter(call, name); });
}

Reach reach_of(const Call& call) {
  if (is_parameter(call, "ToolID")) return Reach::event;
  if (is_property(call)) return Reach::own;
  const auto* const row = std::ranges::find_if(reaches, [&](const ReachRow& r) { return told(r, call); });
  return row == reaches.end() ? Reach::statement : row->reach;
}

/// Where an import in which call `place` was refused may differ from the sound one.
class ImportLeeway {
 public:
  ImportLeeway(const Run& sound, std::size_t place)
      : place_(place),
        refused_(sound.calls[place]),
        at_(sound.steps[place]),
        tool_(tool_before(sound, place)) {}

  [[nodiscard]] bool covers(const Run& run, std::size_t i) const {
    const Step& here = run.steps[i];
    if (i < end_of_region(run)) return true;
    // What a parameter leads comes behind all of them.
    if (at_.stage == Stage::build && leads(refused_))
      return here.line == at_.line && here.stage == Stage::follow;
    // What didn't come into the document is missed by every later search.
    if (at_.stage == Stage::add) return run.calls[i].on == "Tools" || run.calls[i].on.starts_with(tool_);
    if (at_.stage == Stage::follow) return run.calls[i].on.starts_with("Turret(");
    return false;
  }

 private:
  static std::string tool_before(const Run& run, std::size_t place) {
    while (place > 0 && !run.calls[place].on.starts_with("Tool(")) --place;
    return run.calls[place].on.substr(0, run.calls[place].on.find(')') + 1);
  }

  // A solid's properties are written each by itself.
  [[nodiscard]] bool is_of_solid() const {
    return refused_.op == "put" && refused_.on.find(".Solid(") != std::string::npos;
  }

  [[nodiscard]] std::size_t end_of_region(const Run& run) const {
    switch (at_.stage) {
      case Stage::material:
      case Stage::store:
        return first(run, [&](std::size_t i) { return run.steps[i].stage != at_.stage; });
      case Stage::add:
        return first(run, [&](std::size_t i) { return run.steps[i].line != at_.line; });
      case Stage::follow:
        if (is_of_solid()) return place_ + 1;
        // The shape is refreshed whatever became of shift and solid.
        return first(run, [&](std::size_t i) {
          return run.steps[i].stage != at_.stage || run.calls[i].member == "RefreshToolShape";
        });
      case Stage::speeds:
        return refused_.args.find("insert into") == std::string::npos ? run.calls.size() : place_ + 1;
      case Stage::start:
      case Stage::find:
      case Stage::build:
        break;
    }
    return leads(refused_) || reach_of(refused_) != Reach::statement ? place_ + at_once : place_ + 1;
  }

  template <class Test>
  [[nodiscard]] std::size_t first(const Run& run, const Test& test) const {
    std::size_t i = place_ + 1;
    while (i < run.calls.size() && !test(i)) ++i;
    return i;
  }

  std::size_t place_;
  const Call& refused_;
  Step at_;
  std::string tool_;
};

/// One step on one tool, which a failure in its midst may end.
bool changes_a_tool(std::string_view scenario) {
  return scenario.starts_with("modify") || scenario == "deferred-step" || scenario == "delete";
}

}  // namespace

bool is_parameter(const Call& call, std::string_view name) {
  return call.on.ends_with("." + std::string(name)) || call.args == "[\"" + std::string(name) + "\"]";
}

bool is_import(const Scenario& scenario) {
  return std::string_view(scenario.name).starts_with("import");
}

Leeway leeway(const Scenario& scenario, const Run& sound, std::size_t place) {
  if (is_import(scenario)) {
    return [leeway = ImportLeeway(sound, place)](const Run& run, std::size_t i) {
      return leeway.covers(run, i);
    };
  }
  const Call& refused = sound.calls[place];
  const Reach reach = reach_of(refused);
  const bool whole_event = reach == Reach::event || (reach == Reach::own && changes_a_tool(scenario.name));
  const std::size_t end = whole_event ? SIZE_MAX : reach == Reach::own ? place + at_once : place + 1;
  // An operation whose tool can't be read counts at every tool, and is read again.
  const std::string unread = refused.on.starts_with("Operation(") ? refused.on : "";
  return [end, unread](const Run& run, std::size_t i) { return i < end || run.calls[i].on == unread; };
}

}  // namespace deskhost::check
