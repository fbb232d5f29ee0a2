#include "toollist/roads.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "foundation/global.h"
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

/// What a walk over the tools for a name would find, the first tool that has it, without reading a name
/// twice. A name that can't be read lets the comparison count as passed, so the walk ends at that tool for
/// every name that doesn't stand in front of it; such a tool is asked again each time.
class ToolsByName {
 public:
  explicit ToolsByName(const host::Document& document) : document_(document) {}

  /// A view of nothing where no tool has that name. Throws Failure where the walk can't start.
  host::Tool find(const std::string& name) {
    if (!tools_) tools_ = document_.Tools().all();
    if (const auto known = first_by_name_.find(name); known != first_by_name_.end()) return known->second;
    while (read_ < tools_->size()) {
      const host::Tool& tool = (*tools_)[read_];
      std::optional<std::string> tool_name;
      const bool walk_ends = passes([&] {
        tool_name = tool.Name();
        return *tool_name == name;
      });
      if (tool_name) {
        first_by_name_.emplace(*tool_name, tool);
        ++read_;
      }
      if (walk_ends) return tool;
    }
    return {};
  }

 private:
  const host::Document& document_;
  std::optional<std::vector<host::Tool>> tools_;
  std::size_t read_ = 0;  // tools below are in the index
  std::unordered_map<std::string, host::Tool> first_by_name_;
};

/// What a walk over the tools for each station would meet there, in the order of the collection, with each
/// tool's place read once. A place that can't be read fails the test of every station, so such a tool is met
/// at each of them, with its failure.
class ToolsByPlace {
 public:
  struct Met {
    host::Tool tool;
    std::optional<Place> place;
    std::optional<automation::Failure> failure;  // where there is no place
  };

  explicit ToolsByPlace(const host::Document& document) : document_(document) {}

  /// Throws Failure where the walk can't start; the next call tries anew.
  std::vector<const Met*> at(const Place& place) {
    if (!tools_) read_places();
    const auto here = by_place_.find(place);
    if (here == by_place_.end()) return everywhere_;
    std::vector<const Met*> met;
    // Pointers into one array stand in the order of the collection.
    std::ranges::merge(here->second, everywhere_, std::back_inserter(met));
    return met;
  }

 private:
  void read_places() {
    const std::vector<host::Tool> walk = document_.Tools().all();
    tools_.emplace().reserve(walk.size());
    for (const host::Tool& tool : walk) {
      Met& met = tools_->emplace_back(Met{tool, {}, {}});
      try {
        met.place = Place{tool.Turret(), tool.Station()};
        by_place_[*met.place].push_back(&met);
      } catch (const automation::Failure& failure) {
        met.failure = failure;
        everywhere_.push_back(&met);
      }
    }
  }

  const host::Document& document_;
  std::optional<std::vector<Met>> tools_;
  std::map<Place, std::vector<const Met*>> by_place_;
  std::vector<const Met*> everywhere_;
};

void write_station(ToolsByPlace& tools, const Place& place, OperatingTimes& times, const Skipping& skipping) {
  std::vector<const ToolsByPlace::Met*> met;
  skipping.statement([&] { met = tools.at(place); });
  for (const ToolsByPlace::Met* const at_place : met) {
    skipping.statement([&] {
      if (at_place->failure) throw automation::Failure(*at_place->failure);
    });
    skipping.statement([&] { WriteToolListRow(at_place->tool, times, at_place->place); });
  }
}

}  // namespace

bool is_on(std::string_view key) {
  return global::setting(key, "1") == "1";
}

void operation_road(const host::Document& document, OperatingTimes& times, Skipping& skipping) {
  SeenToolIds seen;
  ToolsByName tools(document);
  const std::vector<OperatingTimes::Operation>* operations = nullptr;
  skipping.statement([&] { operations = &times.operations(); });
  if (operations == nullptr) return;
  for (const OperatingTimes::Operation& operation : *operations) {
    skipping.begin();
    // An id that can't be read or has no text counts as seen.
    std::string id;
    skipping.statement([&] {
      if (operation.tool_id) id = operation.tool_id->to_text();
    });
    if (!seen.add(id)) continue;
    host::Tool tool;
    skipping.statement([&] { tool = tools.find(id); });
    if (tool.is_nothing()) continue;
    skipping.statement([&] { WriteToolListRow(tool, times); });
  }
}

void station_road(const host::Document& document, OperatingTimes& times, const Skipping& skipping) {
  ToolsByPlace tools(document);
  host::Turrets turrets;
  std::int32_t turret_count = 0;
  skipping.statement([&] { turrets = document.MachineSetup().Turrets(); });
  skipping.statement([&] { turret_count = turrets.Count(); });
  for (std::int32_t turret = 1; turret <= turret_count; ++turret) {
    std::int32_t station_count = 0;
    skipping.statement([&] { station_count = turrets.Item(turret).Stations().Count(); });
    for (std::int32_t station = 1; station <= station_count; ++station) {
      write_station(tools, {turret, station}, times, skipping);
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
    if (skipping.test([&] { return is_on("DeleteUnusedTools") && !is_used(); })) {
      skipping.statement([&] { tools.Remove(tool.Name()); });
    } else if (skipping.test([&] { return is_on("ExportUnusedTools") || is_used(); })) {
      skipping.statement([&] { WriteToolListRow(tool, times); });
    }
  }
}

}  // namespace mQuorvexList
