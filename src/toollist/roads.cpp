#include "toollist/roads.h"

#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "foundation/global.h"
#include "foundation/kept_walk.h"
#include "toollist/tool_row.h"

namespace mQuorvexList {
namespace {

/// The texts of the tool ids that the operations have used so far; an empty one counts as used from the
/// start.
class SeenToolIds {
 public:
  /// False where it was seen before.
  bool add(const std::string& id) { return seen_.insert(id).second; }

 private:
  std::unordered_set<std::string> seen_{""};
};

using ToolsByName = KeptWalk<host::Tool, std::string>;
using ToolsByStation = KeptWalk<host::Tool, TurretStation>;

/// The first tool of that name, or the first one whose name can't be read: a comparison that fails counts as
/// passed. A view of nothing where there is none. Throws Failure where the walk can't start.
host::Tool tool_named(const std::string& name, ToolsByName& tools) {
  tools.begin(name);
  while (tools.next()) {
    host::Tool tool = tools.entry();
    if (passes([&] { return tools.meets(tool.Name()); })) return tool;
  }
  return {};
}

/// The rows of the tools that stand there; one whose place can't be read counts as standing there.
void write_station(ToolsByStation& tools, const TurretStation& place, OperatingTimes& times,
                   const Skipping& skipping) {
  bool has_tool = false;
  const auto move_on = [&] { has_tool = tools.next(); };
  skipping.statement([&] {
    tools.begin(place);
    move_on();
  });
  while (has_tool) {
    const host::Tool tool = tools.entry();
    std::optional<TurretStation> read;
    if (skipping.test([&] {
          read = TurretStation{tool.Turret(), tool.Station()};
          return tools.meets(*read);
        })) {
      tools.used();
      skipping.statement([&] { WriteToolListRow(tool, times, read); });
    }
    move_on();
  }
}

}  // namespace

bool is_on_by_default(std::string_view key) {
  return global::setting(key, "1") == "1";
}

void operation_road(const host::Document& document, OperatingTimes& times, Skipping& skipping) {
  SeenToolIds seen;
  std::optional<ToolsByName> tools;
  std::vector<host::Operation> operations;
  skipping.statement([&] { operations = times.operations(); });  // Document.Operations, shared with the times
  for (const host::Operation& operation : operations) {
    skipping.begin();
    // An id that can't be read or has no text counts as seen.
    std::string id;
    skipping.statement([&] { id = OperatingTimes::tool_id(operation).to_text(); });
    if (!seen.add(id)) continue;
    host::Tool tool;
    skipping.statement([&] {
      if (!tools) tools.emplace(document.Tools(), Entries::enumerated, Meets::first);
      tool = tool_named(id, *tools);
    });
    if (tool.is_nothing()) continue;
    skipping.statement([&] { WriteToolListRow(tool, times); });
  }
}

void station_road(const host::Document& document, OperatingTimes& times, const Skipping& skipping) {
  std::optional<ToolsByStation> tools;
  host::Turrets turrets;
  std::int32_t turret_count = 0;
  skipping.statement([&] { turrets = document.MachineSetup().Turrets(); });
  skipping.statement([&] { turret_count = turrets.Count(); });
  for (std::int32_t turret = 1; turret <= turret_count; ++turret) {
    std::int32_t station_count = 0;
    skipping.statement([&] { station_count = turrets.Item(turret).Stations().Count(); });
    for (std::int32_t station = 1; station <= station_count; ++station) {
      skipping.statement([&] {
        if (!tools) tools.emplace(document.Tools(), Entries::enumerated, Meets::every);
      });
      if (tools) write_station(*tools, {turret, station}, times, skipping);
    }
  }
}

void document_road(const host::Document& document, OperatingTimes& times, const Skipping& skipping) {
  host::Tools tools;
  std::vector<host::Tool> walk;  // a copy: tools leave the document on the way
  skipping.statement([&] { tools = document.Tools(); });
  skipping.statement([&] { walk = tools.all(); });
  for (const host::Tool& tool : walk) {
    std::optional<bool> used;  // the host's answer holds for both tests
    const auto is_used = [&] {
      if (!used) used = document.IsToolUsed(tool);
      return *used;
    };
    if (skipping.test([&] { return is_on_by_default("DeleteUnusedTools") && !is_used(); })) {
      skipping.statement([&] { tools.Remove(tool.Name()); });
    } else if (skipping.test([&] { return is_on_by_default("ExportUnusedTools") || is_used(); })) {
      skipping.statement([&] { WriteToolListRow(tool, times); });
    }
  }
}

}  // namespace mQuorvexList
