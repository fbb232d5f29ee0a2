#include "deskhost/console/show_document.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <sstream>
#include <string>
#include <vector>

#include "automation/number.h"
#include "deskhost/console/text_table.h"
#include "deskhost/model/document.h"
#include "deskhost/picture/carrier.h"

namespace deskhost {

using automation::Value;
using Json = nlohmann::ordered_json;
using Table = TextTable;

namespace {

/// As a reader writes it; a number that would fill a line so, with an exponent.
std::string number_cell(double number) {
  constexpr std::size_t readable = 16;
  std::string plain = automation::shortest_text(number);
  if (plain.size() <= readable) return plain;
  std::array<char, 32> digits{};
  return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr};
}

std::string cell(const Value& value) {
  if (value.is(Value::Kind::Empty)) return "-";
  if (value.is(Value::Kind::R8)) return number_cell(value.to_double());
  return printable(value.to_text());
}

std::string place(std::string_view name, std::string_view place_number) {
  return std::string(name) + " " + std::string(place_number);
}

/// The parameter that a turning class has, else the one of all classes.
const Value& either(const Tool& tool, std::string_view of_turning, std::string_view of_others) {
  const bool is_turning =
      catalogue::slot_of(tool.tool_class(), *catalogue::find("ToolNoseRadius")).has_value();
  return tool.value(is_turning ? of_turning : of_others);
}

std::string parameters_set(const Tool& tool) {
  const auto parameters = catalogue::parameters_of(tool.tool_class());
  return std::to_string(std::ranges::count_if(
      parameters, [&](catalogue::Index parameter) { return !tool.value(parameter).is(Value::Kind::Empty); }));
}

std::string count_of(std::size_t count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

/// The page as it is put together.
struct Sheet {
  std::ostringstream out;
  Json json = Json::object();

  void add(const char* key, const Table& table) {
    if (!table.is_empty()) table.print(out);
    json[key] = table.json();
  }
};

const char* unit_name(std::int32_t unit) {
  return unit == inches ? "in" : unit == millimetres ? "mm" : "?";
}

/// "mm"; "-" where the tool has none.
std::string unit_of(const Tool& tool) {
  const Value& unit = tool.value("ToolUnit");
  return unit.is(Value::Kind::Empty) ? "-" : unit_name(unit.to_int32());
}

void show_tools(const Tools& tools, Sheet& sheet) {
  sheet.out << "\nTools: " << tools.size() << '\n';
  using enum Align;
  Table table({{"No", right},
               {"ToolID"},
               {"Class", right},
               {"Turret", right},
               {"Station", right},
               {"Orientation", right},
               {"Unit"},
               {"Diameter", right},
               {"Length", right},
               {"Radius", right},
               {"Shift X", right},
               {"Shift Y", right},
               {"Shift Z", right},
               {"Set", right}});
  for (const auto& tool : tools.all()) {
    table.add({cell(tool->value(catalogue::tool_number)), printable(tool->name()),
               std::to_string(tool->tool_class()), cell(tool->value(catalogue::turret_id)),
               cell(tool->value(catalogue::station_id)),
               cell(either(*tool, "LatheToolOrientation", "Orientation")), unit_of(*tool),
               cell(tool->value("ToolDiameter")), cell(tool->value("ToolLength")),
               cell(either(*tool, "ToolNoseRadius", "CornerRadius")),
               cell(tool->value(catalogue::tool_shift_x)), cell(tool->value(catalogue::tool_shift_y)),
               cell(tool->value(catalogue::tool_shift_z)), parameters_set(*tool)});
  }
  sheet.add("tools", table);
}

void show_tools_off_station(const Document& document, Sheet& sheet) {
  Table table({{"ToolID"}, {"Turret", Align::right}, {"Station", Align::right}});
  for (const Tool* tool : tools_on_no_station(document)) {
    table.add({printable(tool->name()), cell(tool->value(catalogue::turret_id)),
               cell(tool->value(catalogue::station_id))});
  }
  if (!table.is_empty()) sheet.out << "\nOn no station\n";
  sheet.add("on_no_station", table);
}

void add_stations(const std::string& owner, const Stations& stations, Table& table) {
  for (const auto& station : stations.items) {
    table.add({owner, std::to_string(station->place), std::to_string(station->number),
               std::to_string(station->tool_reference), cell(station->radial_offset),
               cell(station->axial_offset), cell(station->turret_angle), cell(station->tilt_angle)});
  }
}

void show_machine_setup(const MachineSetup* setup, Table& stations, Sheet& sheet) {
  if (setup == nullptr) {
    sheet.out << "Machine setup: none\n";
    return;
  }
  sheet.out << "Machine setup: program " << setup->program_number << " \"" << printable(setup->program_name)
            << "\", " << count_of(setup->turrets->items.size(), "turret") << '\n';
  for (const auto& turret : setup->turrets->items) {
    sheet.out << "  Turret " << turret->number << " \"" << printable(turret->name) << "\", kind "
              << turret->kind << ", " << count_of(turret->stations->items.size(), "station") << '\n';
    add_stations(place("Turret", std::to_string(turret->number)), *turret->stations, stations);
  }
}

void show_mill_setup(const MillSetup* setup, Table& stations, Sheet& sheet) {
  if (setup == nullptr) {
    sheet.out << "Mill setup: none\n";
    return;
  }
  sheet.out << "Mill setup: program " << setup->program_number << " \"" << printable(setup->program_name)
            << "\", spindle size " << setup->spindle_size << ", "
            << count_of(setup->stations->items.size(), "station") << '\n';
  add_stations("Mill", *setup->stations, stations);
}

void show_setups(const Document& document, Sheet& sheet) {
  using enum Align;
  Table stations({{"On"},
                  {"Place", right},
                  {"Number", right},
                  {"Reference", right},
                  {"Radial", right},
                  {"Axial", right},
                  {"Turret angle", right},
                  {"Tilt angle", right}});
  sheet.out << '\n';
  show_machine_setup(document.machine_setup.get(), stations, sheet);
  show_mill_setup(document.mill_setup.get(), stations, sheet);
  if (!stations.is_empty()) sheet.out << "\nStations\n";
  sheet.add("stations", stations);
}

void show_solids(const Document& document, Sheet& sheet) {
  using enum Align;
  Table table({{"Turret", right}, {"Station", right}, {"Solid"}, {"Shown"}, {"Unmounted"}, {"Model"}});
  std::size_t count = 0;
  if (document.machine_setup) {
    for (const auto& turret : document.machine_setup->turrets->items) {
      for (const auto& solid : turret->solids->items) {
        ++count;
        table.add({std::to_string(turret->number),
                   solid->station_place == 0 ? "-" : std::to_string(solid->station_place),
                   printable(solid->name), solid->shown ? "yes" : "no", solid->unmounted ? "yes" : "no",
                   printable(solid->model_path)});
      }
    }
  }
  sheet.out << "\nSolids: " << count << '\n';
  sheet.add("solids", table);
}

void show_operations(const Document& document, Sheet& sheet) {
  Table table({{"No", Align::right}, {"ToolID"}, {"Time", Align::right}, {"In document"}});
  std::size_t number = 0;
  for (const auto& operation : document.operations().items) {
    const auto& id = operation->tool_id;
    table.add({std::to_string(++number), id ? printable(*id) : "-", number_cell(operation->duration),
               id && document.tools().find_by_id(*id) ? "yes" : "no"});
  }
  sheet.out << "\nOperations: " << number << '\n';
  sheet.add("operations", table);
}

std::string machine_name(std::int32_t machine_type) {
  if (machine_type == 1) return "turrets";
  if (machine_type == 2) return "mill";
  return "machine type " + std::to_string(machine_type);
}

}  // namespace

Page show_document(const Document& document) {
  Sheet sheet;
  const std::string machine = machine_name(document.machine_type);
  const std::string units = document.unit_system == inches ? "inches" : "millimetres";
  sheet.json = {{"document", document.name}, {"machine", machine}, {"units", units}};
  sheet.out << "Document " << printable(document.name) << ": " << machine << ", " << units << ", "
            << count_of(document.tools().size(), "tool") << ", "
            << count_of(document.operations().items.size(), "operation") << '\n'
            << "Lengths of a tool are in its own unit, all others in " << units << "; angles in radians\n";
  show_tools(document.tools(), sheet);
  show_tools_off_station(document, sheet);
  show_setups(document, sheet);
  show_solids(document, sheet);
  show_operations(document, sheet);
  return {sheet.out.str(), std::move(sheet.json)};
}

}  // namespace deskhost
