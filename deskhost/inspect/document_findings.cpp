#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

#include "automation/number.h"
#include "deskhost/document/doubts.h"
#include "deskhost/inspect/changes.h"
#include "deskhost/inspect/findings.h"
#include "deskhost/system/file_path.h"
#include "formats/export_fields.h"
#include "formats/tool_identity.h"
#include "platform/files.h"

namespace deskhost::inspect {
namespace {

using namespace formats;

constexpr std::int32_t turret_machine = 1;
constexpr std::int32_t mill_machine = 2;

std::int32_t whole_of(const automation::Value& value) {
  try {
    return value.to_int32();
  } catch (const automation::Failure&) {
    return 0;
  }
}

/// Where a tool stands; a mill has no turrets.
struct Spot {
  std::int32_t turret, station;
  auto operator<=>(const Spot&) const = default;
  [[nodiscard]] std::string text() const {
    return (turret == 0 ? "" : "turret " + std::to_string(turret) + ", ") + "station " +
           std::to_string(station);
  }
};

/// What a document's machine has, and who has what in it.
class Machine {
 public:
  explicit Machine(const Document& document) : document_(document) {
    for (const auto& tool : document.tools().all()) {
      if (has(spot_of(*tool))) on_station_[spot_of(*tool)].push_back(tool.get());
      const automation::Value& number = tool->value(catalogue::tool_number);
      if (!number.is(automation::Value::Kind::Empty)) with_number_[whole_of(number)].push_back(tool.get());
    }
  }
  [[nodiscard]] Spot spot_of(const Tool& tool) const {
    const bool has_turrets = document_.machine_type == turret_machine;
    return {has_turrets ? whole_of(tool.value(catalogue::turret_id)) : 0,
            whole_of(tool.value(catalogue::station_id))};
  }
  /// The stations of a turret or of the mill; nothing for a turret that isn't there.
  [[nodiscard]] std::optional<std::size_t> stations_of(std::int32_t turret) const {
    if (document_.machine_type == mill_machine) {
      return document_.mill_setup ? document_.mill_setup->stations->items.size() : 0;
    }
    const std::size_t turrets = document_.machine_setup ? document_.machine_setup->turrets->items.size() : 0;
    if (turret < 1 || static_cast<std::size_t>(turret) > turrets) return std::nullopt;
    return document_.machine_setup->turrets->items[static_cast<std::size_t>(turret - 1)]
        ->stations->items.size();
  }
  [[nodiscard]] bool has(const Spot& spot) const {
    const auto stations = stations_of(spot.turret);
    return stations && spot.station >= 1 && static_cast<std::size_t>(spot.station) <= *stations;
  }
  [[nodiscard]] const std::vector<const Tool*>& on(const Spot& spot) const { return on_station_.at(spot); }
  [[nodiscard]] const std::vector<const Tool*>& with_number(std::int32_t number) const {
    return with_number_.at(number);
  }

 private:
  const Document& document_;
  std::map<Spot, std::vector<const Tool*>> on_station_;
  std::map<std::int32_t, std::vector<const Tool*>> with_number_;
};

std::string names_of(const std::vector<const Tool*>& tools, const Tool* without) {
  constexpr std::size_t shown = 3;
  std::string text;
  std::size_t count = 0;
  for (const Tool* tool : tools) {
    if (tool == without) continue;
    if (count++ < shown) text += (text.empty() ? "\"" : ", \"") + tool->name() + "\"";
  }
  if (count > shown) text += " and " + std::to_string(count - shown) + " more";
  return text;
}

/// The field that a new tool's station came from.
std::size_t station_field(const DataLine& line) {
  const std::string station = line.text(field_station_id);
  return station.empty() || station == "0" ? field_tool_number : field_station_id;
}

/// A tool that stands nowhere; what becomes of it in the tool list is found by writing one.
void find_place(const DataLine& line, const Tool& tool, const Machine& machine, Report& report) {
  const Spot spot = machine.spot_of(tool);
  if (machine.has(spot)) return;
  const auto stations = machine.stations_of(spot.turret);
  const std::string what =
      stations ? "The machine has no " + spot.text() + ": there " +
                     (*stations == 1 ? "is 1 station" : "are " + std::to_string(*stations) + " stations")
      : spot.turret == 0 ? "The tool stands on no turret"
                         : "The machine has no turret " + std::to_string(spot.turret);
  Finding made = finding(Severity::warning, stations ? "no-station" : "no-turret", line,
                         stations ? station_field(line) : field_turret_id, what,
                         stations ? "Give a station that is there (field 89; without one the tool's number "
                                    "or the setting takes its place)."
                                  : "Give a turret that is there (field 88).");
  made.stands = std::to_string(stations ? spot.station : spot.turret);
  report.findings.push_back(std::move(made));
}

void tell_tool_list(Trial& trial, std::size_t from, Report& report) {
  const auto is_place = [](const Finding& each) {
    return each.code == "no-station" || each.code == "no-turret";
  };
  if (std::none_of(report.findings.begin() + static_cast<std::ptrdiff_t>(from), report.findings.end(),
                   is_place)) {
    return;
  }
  const std::set<std::string> listed = trial.listed();
  for (std::size_t i = from; i < report.findings.size(); ++i) {
    Finding& each = report.findings[i];
    if (!is_place(each)) continue;
    const std::string identifier(tool_identity::behind_last_hash(each.tool));
    each.what += listed.contains(identifier) ? ". The tool list has the tool all the same."
                                             : ". The tool will be missing from the tool list.";
  }
}

void find_number(const DataLine& line, const Tool& tool, const Machine& machine, Report& report) {
  const automation::Value& value = tool.value(catalogue::tool_number);
  if (value.is(automation::Value::Kind::Empty)) return;
  const auto& others = machine.with_number(whole_of(value));
  if (others.size() < 2) return;
  report.findings.push_back(finding(Severity::warning, "number-taken", line, field_tool_number,
                                    "The number " + value.to_text() + " is also that of " +
                                        names_of(others, &tool) + "; nobody looks whether it is free.",
                                    "Give each tool its own number, or 0 for the lowest free one."));
}

void find_shared_station(const DataLine& line, const Tool& tool, const Machine& machine, Report& report) {
  const Spot spot = machine.spot_of(tool);
  if (!machine.has(spot) || machine.on(spot).size() < 2) return;
  report.findings.push_back(finding(Severity::note, "station-shared", line, station_field(line),
                                    "On " + spot.text() + " there also " +
                                        (machine.on(spot).size() == 2 ? "stands " : "stand ") +
                                        names_of(machine.on(spot), &tool) + ".",
                                    "Nothing to do if the holder takes several tools."));
}

void find_unit(const DataLine& line, const Document& document, Report& report) {
  const std::string text = line.text(field_tool_unit);
  const auto unit = automation::read_number(text);
  if (text.empty() || unit == document.unit_system) return;
  const auto name = [&](std::optional<double> number) {
    return number == inches        ? std::string("inches")
           : number == millimetres ? "millimetres"
                                   : "\"" + text + "\", which is no unit (70 is inches, 71 millimetres)";
  };
  report.findings.push_back(
      finding(Severity::warning, "unit", line, field_tool_unit,
              "The tool is in " + name(unit) + ", the document in " + name(document.unit_system) +
                  ": lengths aren't converted, and the shift is taken in the document's unit.",
              "Export the tool in the unit of the document, or open one in the unit of the tool."));
}

void find_model(const DataLine& line, const Options& options, Report& report) {
  namespace fs = std::filesystem;
  const std::string name = tool_identity::model_file(line.text(field_tool_id));
  if (name.find_first_of("/\\") != std::string::npos) {
    report.findings.push_back(
        finding(Severity::warning, "model-outside", line, field_tool_id,
                "The model's file is \"" + name + "\": it doesn't lie in the models' folder.",
                "Leave \"/\" and \"\\\" out of what stands behind the first \"#\"."));
    return;
  }
  const auto flag = automation::read_number(line.text(field_user_model_flag));
  if (options.models.empty() || !flag || *flag == 0) return;
  const std::string folder = deskhost::name_of(fs::absolute(path_of(options.models)).lexically_normal());
  if (platform::file_exists(folder + "\\" + name)) return;
  report.findings.push_back(
      finding(Severity::warning, "model-missing", line, field_user_model_flag,
              "The models' folder has no \"" + name + "\": the tool comes without a solid.",
              "Put the file there under this very name."));
}

void find_kept_shift(const DataLine& line, const WatchedLine& watched, Report& report) {
  const auto reference = watched.station_reference;
  if (!reference || *reference == 0) return;
  using enum formats::Field;
  for (const std::size_t field : {field_tool_shift_x, field_tool_shift_y, field_tool_shift_z}) {
    if (automation::numeric_prefix(line.text(field)) == 0) continue;
    const std::string name(export_fields[field].name);
    Finding made = finding(Severity::note, "shift-kept", line, field,
                           "The station's reference is " + std::to_string(*reference) +
                               ": the shift doesn't follow the tool's orientation.",
                           "Nothing to do if the station is measured so; else set its reference to 0.");
    made.stands = text_of(watched.tool->value(name));
    report.findings.push_back(std::move(made));
    return;  // told once for the three of them
  }
}

void note_missing_options(const Options& options, const std::vector<DataLine>& lines, Report& report) {
  const auto asks_for_model = [](const DataLine& line) {
    const auto flag = automation::read_number(line.text(field_user_model_flag));
    return flag && *flag != 0;
  };
  if (options.models.empty() && std::ranges::any_of(lines, asks_for_model)) {
    report.findings.push_back(
        finding(Severity::note, "no-models", 0,
                "Tools have models, and no folder of models was given: the trial had none.",
                "Give it with --models FOLDER."));
  }
  if (options.document.empty() && !lines.empty()) {
    report.findings.push_back(
        finding(Severity::note, "no-document", 0,
                "No document was given: the trial took an empty one without a machine, so "
                "places, units and tools that are there already weren't looked at.",
                "Give the document behind the file."));
  }
}

void find_doubts(const Document& document, Report& report) {
  for (const std::string& doubt : doubts_about(document)) {
    Finding made = finding(Severity::warning, "document-doubt", 0,
                           "A host could have it so, and a user hardly means it: " + doubt + ".",
                           "Look at that place of the document before the import.");
    made.source = Source::document;
    report.findings.push_back(std::move(made));
  }
}

}  // namespace

void find_in_document(const Inspected& inspected, Report& report) {
  const Trial& trial = inspected.trial;
  const bool has_document = !inspected.options.document.empty();
  const bool has_machine = has_document && (trial.after->machine_type == turret_machine ||
                                            trial.after->machine_type == mill_machine);
  const Machine machine(*trial.after);
  const std::size_t from = report.findings.size();
  find_doubts(*trial.before, report);
  note_missing_options(inspected.options, inspected.file.lines(), report);
  for (std::size_t i = 0; i < inspected.lines_read(); ++i) {
    const DataLine& line = inspected.file.lines()[i];
    const WatchedLine& watched = trial.watch.lines[i];
    const Tool& tool = *watched.tool;
    if (watched.is_new) find_number(line, tool, machine, report);
    if (watched.is_new && has_machine) {
      find_place(line, tool, machine, report);
      find_shared_station(line, tool, machine, report);
    }
    if (has_document) find_unit(line, *trial.after, report);
    find_model(line, inspected.options, report);
    find_kept_shift(line, watched, report);
  }
  tell_tool_list(inspected.trial, from, report);
}

}  // namespace deskhost::inspect
