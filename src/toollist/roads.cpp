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
/// tool's place read once. A place that can't be read fails the test of the station where it was asked for,
/// so the tool is met there with its failure; the next station asks again, as the walk does, and a tool that
/// tells its place then is met at that place only.
class ToolsByPlace {
 public:
  struct Met {
    host::Tool tool;
    std::optional<Place> place;
    std::optional<automation::Failure> failure;  // of the last reading, where there is no place
  };

  explicit ToolsByPlace(const host::Document& document) : document_(document) {}

  /// Valid until the next call. Throws Failure where the walk can't start; the next call tries anew.
  std::vector<const Met*> at(const Place& place) {
    if (!tools_) take_tools();
    std::erase_if(unplaced_, [this](Met* tool) { return read_place(*tool); });
    std::vector<const Met*> met;
    // Pointers into one array stand in the order of the collection.
    std::ranges::merge(by_place_[place], unplaced_, std::back_inserter(met));
    return met;
  }

 private:
  void take_tools() {
    const std::vector<host::Tool> walk = document_.Tools().all();
    tools_.emplace().reserve(walk.size());
    for (const host::Tool& tool : walk) unplaced_.push_back(&tools_->emplace_back(Met{tool, {}, {}}));
  }
  /// False where the host refuses it.
  bool read_place(Met& tool) {
    try {
      tool.place = Place{tool.tool.Turret(), tool.tool.Station()};
    } catch (const automation::Failure& failure) {
      tool.failure = failure;
      return false;
    }
    std::vector<const Met*>& here = by_place_[*tool.place];
    here.insert(std::ranges::upper_bound(here, &tool), &tool);
    return true;
  }

  const host::Document& document_;
  std::optional<std::vector<Met>> tools_;
  std::map<Place, std::vector<const Met*>> by_place_;
  std::vector<Met*> unplaced_;
};

void write_station(ToolsByPlace& tools, const Place& place, OperatingTimes& times, const Skipping& skipping) {
  std::vector<const ToolsByPlace::Met*> met;
  skipping.statement([&] { met = tools.at(place); });
  for (const ToolsByPlace::Met* const tool : met) {
    skipping.statement([&] {
      if (!tool->place) throw automation::Failure(*tool->failure);
    });
    skipping.statement([&] { WriteToolListRow(tool->tool, times, tool->place); });
  }
}

}  // namespace

bool is_on(std::string_view key) {
  return global::setting(key, "1") == "1";
}

void operation_road(const host::Document& document, OperatingTimes& times, Skipping& skipping) {
  SeenToolIds seen;
  ToolsByName tools(document);
  std::size_t count = 0;
  skipping.statement([&] { count = times.count(); });
  for (std::size_t position = 0; position < count; ++position) {
    skipping.begin();
    // An id that can't be read or has no text counts as seen.
    std::string id;
    skipping.statement([&] {
      if (const automation::Value* tool_id = times.tool_id(position)) id = tool_id->to_text();
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
