#include "deskhost/inspect/changes.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <utility>

#include "automation/number.h"
#include "formats/export_fields.h"
#include "formats/tool_identity.h"

namespace deskhost::inspect {

using automation::Value;

namespace {

using enum Change::Kind;
using Lists = std::map<std::string, std::vector<std::string>>;

struct PropertyField {
  std::string_view name;
  std::size_t field;
};
constexpr std::array<PropertyField, 5> property_fields{{
    {"ToolShiftXSave", formats::field_tool_shift_x},
    {"ToolShiftYSave", formats::field_tool_shift_y},
    {"ToolShiftZSave", formats::field_tool_shift_z},
    {"ToolStyle", formats::field_tool_style},
    {"UserModelFlag", formats::field_user_model_flag},
}};

const char* yes_or_no(bool value) {
  return value ? "yes" : "no";
}

/// Parameters have few kinds of values; most of them are the same in both documents.
bool is_same(const Value& a, const Value& b) {
  if (a.kind() != b.kind()) return false;
  if (const std::string* text = a.text()) return *text == *b.text();
  return a.is(Value::Kind::Empty) || a.to_double() == b.to_double();
}

/// Adds the change unless both sides are the same.
void compare(std::vector<Change>& changes, Change change) {
  if (change.before != change.after) changes.push_back(std::move(change));
}

void compare_parameters(const Tool* before, const Tool& after,
                        const std::map<std::string, std::string>& materials, std::vector<Change>& changes) {
  for (const catalogue::Index index : catalogue::parameters_of(after.tool_class())) {
    if (before != nullptr && is_same(before->value(index), after.value(index))) continue;
    const std::string name(catalogue::parameters()[index].name);
    Change change{parameter,
                  name,
                  before ? text_of(before->value(index)) : std::nullopt,
                  text_of(after.value(index)),
                  field_of_parameter(name),
                  ""};
    if (name == "ToolMaterial" && change.after) {
      const auto material = materials.find(*change.after);
      if (material != materials.end()) change.meaning = material->second;
    }
    compare(changes, std::move(change));
  }
}

void compare_marks(const Tool* before, const Tool& after, std::vector<Change>& changes) {
  for (const catalogue::Index index : catalogue::parameters_of(after.tool_class())) {
    const bool was_marked = before != nullptr && before->marked(index);
    if (was_marked == after.marked(index)) continue;
    changes.push_back({mark, std::string(catalogue::parameters()[index].name), yes_or_no(was_marked),
                       yes_or_no(after.marked(index)), std::nullopt, ""});
  }
  compare(changes, {flag, "Flag", yes_or_no(before != nullptr && before->flag()), yes_or_no(after.flag()),
                    std::nullopt, ""});
}

// Properties are made or written, never taken away.
void compare_properties(const Tool* before, const Tool& after, std::vector<Change>& changes) {
  const CustomProperties* const present = after.existing_custom_properties();
  if (present == nullptr) return;
  const CustomProperties* const past = before ? before->existing_custom_properties() : nullptr;
  for (const auto& each : present->all()) {
    const auto old = past ? past->find(each->name()) : nullptr;
    compare(changes, {property, each->name(), old ? text_of(old->value()) : std::nullopt,
                      text_of(each->value()), field_of_property(each->name()), ""});
  }
}

std::string description(const Turret& turret, const SolidModel& solid) {
  std::string text = "turret " + std::to_string(turret.number);
  text += solid.station_place == 0 ? ", no station" : ", station " + std::to_string(solid.station_place);
  if (!solid.shown) text += ", hidden";
  if (solid.unmounted) text += ", unmounted";
  return text + ", " + solid.model_path;
}

/// The solids of a document by their names, each described in one text.
Lists solids_of(const Document& document) {
  Lists solids;
  if (!document.machine_setup) return solids;
  for (const auto& turret : document.machine_setup->turrets->items) {
    for (const auto& solid : turret->solids->items) {
      solids[solid->name].push_back(description(*turret, *solid));
    }
  }
  return solids;
}

/// Takes out what stands in both, one for one.
void drop_equal(std::vector<std::string>& a, std::vector<std::string>& b) {
  std::erase_if(a, [&](const std::string& text) {
    const auto same = std::ranges::find(b, text);
    if (same == b.end()) return false;
    b.erase(same);
    return true;
  });
}

std::vector<Change> compare_solids(const Document& before, const Document& after) {
  Lists old = solids_of(before);
  Lists present = solids_of(after);
  for (const auto& [name, list] : old) present.try_emplace(name);
  std::vector<Change> changes;
  for (auto& [name, list] : present) {
    std::vector<std::string>& was = old[name];
    drop_equal(was, list);
    for (std::size_t i = 0; i < std::max(was.size(), list.size()); ++i) {
      changes.push_back({solid, name, i < was.size() ? std::optional(was[i]) : std::nullopt,
                         i < list.size() ? std::optional(list[i]) : std::nullopt, std::nullopt, ""});
    }
  }
  return changes;
}

void compare_stations(const std::string& owner, const Stations& before, const Stations& after,
                      std::vector<Change>& changes) {
  for (std::size_t i = 0; i < std::min(before.items.size(), after.items.size()); ++i) {
    compare(changes, {station, owner + "station " + std::to_string(i + 1) + " ToolReference",
                      std::to_string(before.items[i]->tool_reference),
                      std::to_string(after.items[i]->tool_reference), std::nullopt, ""});
  }
}

std::vector<Change> compare_all_stations(const Document& before, const Document& after) {
  std::vector<Change> changes;
  if (before.machine_setup && after.machine_setup) {
    const auto& old = before.machine_setup->turrets->items;
    const auto& present = after.machine_setup->turrets->items;
    for (std::size_t t = 0; t < std::min(old.size(), present.size()); ++t) {
      compare_stations("turret " + std::to_string(t + 1) + ", ", *old[t]->stations, *present[t]->stations,
                       changes);
    }
  }
  if (before.mill_setup && after.mill_setup) {
    compare_stations("", *before.mill_setup->stations, *after.mill_setup->stations, changes);
  }
  return changes;
}

/// A solid is the affair of the tool that its name comes from; where several have it, of the last one that a
/// line was about.
void hand_out_solids(std::vector<Change> solids, Report& report) {
  std::unordered_map<std::string, ToolReport*> owners;
  for (ToolReport& tool : report.tools) {
    ToolReport*& owner = owners[tool_identity::model_file(tool.name)];
    if (owner == nullptr || !tool.lines.empty()) owner = &tool;
  }
  for (Change& change : solids) {
    const auto owner = owners.find(change.name);
    (owner == owners.end() ? report.machine : owner->second->changes).push_back(std::move(change));
  }
}

ToolReport::State state_of(const ToolReport& tool, bool is_new) {
  if (is_new) return ToolReport::State::created;
  if (!tool.changes.empty()) return ToolReport::State::changed;
  return tool.lines.empty() ? ToolReport::State::untouched : ToolReport::State::unchanged;
}

}  // namespace

std::optional<std::size_t> field_of_parameter(std::string_view name) {
  // This one is filled from the position that the tool has in the database.
  if (name == "CustomSetting6") return formats::field_lathe_tool_orientation;
  const auto* const row = std::ranges::find(formats::export_fields, name, &formats::ExportField::name);
  return row == formats::export_fields.end() ? std::nullopt : std::optional(row->number);
}

std::optional<std::size_t> field_of_property(std::string_view name) {
  const auto* const row = std::ranges::find(property_fields, name, &PropertyField::name);
  return row == property_fields.end() ? std::nullopt : std::optional(row->field);
}

std::optional<std::string> text_of(const Value& value) {
  if (value.is(Value::Kind::Empty)) return std::nullopt;
  return value.is(Value::Kind::R8) ? automation::shortest_text(value.to_double()) : value.to_text();
}

void find_changes(const std::vector<DataLine>& lines, const std::vector<WatchedLine>& watched,
                  const std::map<std::string, std::string>& materials, Report& report) {
  std::unordered_map<const Tool*, std::vector<std::size_t>> lines_of;
  for (std::size_t i = 0; i < watched.size(); ++i) {
    lines_of[watched[i].tool.get()].push_back(lines[i].number);
  }
  const auto& old = report.before->tools().all();
  const auto& present = report.after->tools().all();
  for (std::size_t i = 0; i < present.size(); ++i) {
    const Tool& after = *present[i];
    const Tool* const before = i < old.size() ? old[i].get() : nullptr;  // an import adds at the end
    ToolReport tool{{}, after.name(), before ? before->name() : "", after.tool_class(), {}, {}, i};
    if (const auto found = lines_of.find(&after); found != lines_of.end()) tool.lines = found->second;
    compare_parameters(before, after, materials, tool.changes);
    compare_properties(before, after, tool.changes);
    compare_marks(before, after, tool.changes);
    report.tools.push_back(std::move(tool));
  }
  report.machine = compare_all_stations(*report.before, *report.after);
  hand_out_solids(compare_solids(*report.before, *report.after), report);
  for (ToolReport& tool : report.tools) tool.state = state_of(tool, tool.place >= old.size());
}

}  // namespace deskhost::inspect
