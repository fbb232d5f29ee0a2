#include "deskhost/console/show_document.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <ostream>
#include <string>
#include <vector>

#include "automation/number.h"
#include "deskhost/console/text_table.h"
#include "deskhost/model/document.h"

namespace deskhost {

using automation::Value;
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

void show_tools(const Tools& tools, std::ostream& out) {
  out << "\nTools: " << tools.size() << '\n';
  if (tools.size() == 0) return;
  using enum Align;
  Table table({{"No", right},
               {"ToolID"},
               {"Class", right},
               {"Turret", right},
               {"Station", right},
               {"Orientation", right},
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
               cell(either(*tool, "LatheToolOrientation", "Orientation")), cell(tool->value("ToolDiameter")),
               cell(tool->value("ToolLength")), cell(either(*tool, "ToolNoseRadius", "CornerRadius")),
               cell(tool->value(catalogue::tool_shift_x)), cell(tool->value(catalogue::tool_shift_y)),
               cell(tool->value(catalogue::tool_shift_z)), parameters_set(*tool)});
  }
  table.print(out);
}

void show_stations(const std::string& owner, const Stations& stations, Table& table) {
  for (const auto& station : stations.items) {
    table.add({owner, std::to_string(station->place), std::to_string(station->number),
               std::to_string(station->tool_reference), cell(station->radial_offset),
               cell(station->axial_offset), cell(station->turret_angle), cell(station->tilt_angle)});
  }
}

void show_setups(const Document& document, std::ostream& out) {
  using enum Align;
  Table stations({{"On"},
                  {"Place", right},
                  {"Number", right},
                  {"Reference", right},
                  {"Radial", right},
                  {"Axial", right},
                  {"Turret angle", right},
                  {"Tilt angle", right}});
  bool any = false;
  out << '\n';
  if (const auto& setup = document.machine_setup) {
    out << "Machine setup: program " << setup->program_number << " \"" << printable(setup->program_name)
        << "\", " << count_of(setup->turrets->items.size(), "turret") << '\n';
    for (const auto& turret : setup->turrets->items) {
      out << "  Turret " << turret->number << " \"" << printable(turret->name) << "\", kind " << turret->kind
          << ", " << count_of(turret->stations->items.size(), "station") << '\n';
      show_stations(place("Turret", std::to_string(turret->number)), *turret->stations, stations);
      any = any || !turret->stations->items.empty();
    }
  } else {
    out << "Machine setup: none\n";
  }
  if (const auto& setup = document.mill_setup) {
    out << "Mill setup: program " << setup->program_number << " \"" << printable(setup->program_name)
        << "\", spindle size " << setup->spindle_size << ", "
        << count_of(setup->stations->items.size(), "station") << '\n';
    show_stations("Mill", *setup->stations, stations);
    any = any || !setup->stations->items.empty();
  } else {
    out << "Mill setup: none\n";
  }
  if (!any) return;
  out << "\nStations\n";
  stations.print(out);
}

void show_solids(const Document& document, std::ostream& out) {
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
  out << "\nSolids: " << count << '\n';
  if (count > 0) table.print(out);
}

std::string machine_name(std::int32_t machine_type) {
  if (machine_type == 1) return "turrets";
  if (machine_type == 2) return "mill";
  return "machine type " + std::to_string(machine_type);
}

}  // namespace

void show_document(const Document& document, std::ostream& out) {
  out << "Document " << printable(document.name) << ": " << machine_name(document.machine_type) << ", "
      << (document.unit_system == inches ? "inches" : "millimetres") << ", "
      << count_of(document.tools().size(), "tool") << ", "
      << count_of(document.operations().items.size(), "operation") << '\n';
  show_tools(document.tools(), out);
  show_setups(document, out);
  show_solids(document, out);
}

}  // namespace deskhost
