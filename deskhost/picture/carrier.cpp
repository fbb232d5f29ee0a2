#include "deskhost/picture/carrier.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace deskhost {

using automation::Value;

namespace {

double length_of(const Value& value) {
  try {
    return value.to_double();
  } catch (const automation::Failure&) {
    return 0;
  }
}

std::int32_t whole_of(const Value& value) {
  try {
    return value.to_int32();
  } catch (const automation::Failure&) {
    return 0;
  }
}

bool is_lathe_style(std::int32_t style) {
  constexpr std::array<std::int32_t, 7> styles{16, 17, 18, 19, 22, 23, 24};
  return std::ranges::find(styles, style) != styles.end();
}

struct DirectionName {
  std::int32_t number;
  const char* name;
};
constexpr std::array<DirectionName, 16> direction_names{{{1, "Z+"},
                                                         {2, "Z-"},
                                                         {3, "X-"},
                                                         {4, "X+"},
                                                         {6, "Y+"},
                                                         {7, "Y-"},
                                                         {11, "1V"},
                                                         {12, "2V"},
                                                         {13, "3V"},
                                                         {14, "4V"},
                                                         {15, "1H"},
                                                         {16, "2H"},
                                                         {17, "3H"},
                                                         {18, "4H"},
                                                         {23, "A"},
                                                         {24, "RA"}}};

std::string orientation_of(const Tool& tool) {
  const bool lathe = is_lathe_style(whole_of(tool.value("ToolStyle")));
  const Value& value = tool.value(lathe ? "LatheToolOrientation" : "Orientation");
  if (value.is(Value::Kind::Empty)) return "–";
  const auto row = std::ranges::find(direction_names, whole_of(value), &DirectionName::number);
  return value.to_text() + (row == direction_names.end() ? "" : std::string(" (") + row->name + ")");
}

ToolMark mark_of(const Tool& tool) {
  return {tool.name(),
          orientation_of(tool),
          {length_of(tool.value("ToolShiftX")), length_of(tool.value("ToolShiftY")),
           length_of(tool.value("ToolShiftZ"))}};
}

SolidMark mark_of(const SolidModel& solid) {
  const auto channel = [&](int shift) { return std::to_string((solid.color >> shift) & 0xFF); };
  return {solid.name, "rgb(" + channel(0) + "," + channel(8) + "," + channel(16) + ")",
          solid.shown && !solid.unmounted};
}

Carrier carrier_of(const std::string& title, const Stations& stations) {
  Carrier carrier;
  carrier.title = title;
  for (const auto& station : stations.items) {
    carrier.radius = std::max(carrier.radius, std::abs(station->radial_offset));
  }
  carrier.in_place = carrier.radius > 0;
  if (!carrier.in_place) carrier.radius = 100;
  const auto count = static_cast<double>(stations.items.size());
  for (const auto& station : stations.items) {
    Spot spot{station->number, station->tool_reference, 0, 0, 0, 0, {}, {}};
    const double a = carrier.in_place
                         ? station->turret_angle
                         : 2 * std::numbers::pi * static_cast<double>(carrier.spots.size()) / count;
    const double r = carrier.in_place ? station->radial_offset : carrier.radius;
    const double h = station->axial_offset;
    spot.x = r * std::cos(a);
    spot.y = -r * std::sin(a) + (carrier.in_place ? h * std::sin(station->tilt_angle) : 0);
    spot.z = h * std::cos(station->tilt_angle);
    spot.side_x = spot.x;
    carrier.spots.push_back(std::move(spot));
  }
  return carrier;
}

Carrier turret_of(const Turret& turret, const Document& document) {
  Carrier carrier =
      carrier_of("Turret " + std::to_string(turret.number) + "  " + turret.name, *turret.stations);
  for (const auto& tool : document.tools().all()) {
    const std::int32_t station = whole_of(tool->value("StationID"));
    if (whole_of(tool->value("TurretID")) != turret.number) continue;
    if (station < 1 || station > static_cast<std::int32_t>(carrier.spots.size())) continue;
    carrier.spots[static_cast<std::size_t>(station - 1)].tools.push_back(mark_of(*tool));
  }
  for (const auto& solid : turret.solids->items) {
    const auto place = static_cast<std::size_t>(solid->station_place);
    auto& marks =
        place >= 1 && place <= carrier.spots.size() ? carrier.spots[place - 1].solids : carrier.off_station;
    marks.push_back(mark_of(*solid));
  }
  return carrier;
}

Carrier magazine_of(const MillSetup& setup, const Document& document) {
  Carrier carrier = carrier_of("Magazine  spindle " + std::to_string(setup.spindle_size), *setup.stations);
  for (const auto& tool : document.tools().all()) {
    const std::int32_t station = whole_of(tool->value("StationID"));
    if (station < 1 || station > static_cast<std::int32_t>(carrier.spots.size())) continue;
    carrier.spots[static_cast<std::size_t>(station - 1)].tools.push_back(mark_of(*tool));
  }
  return carrier;
}

}  // namespace

std::vector<Carrier> carriers_of(const Document& document) {
  std::vector<Carrier> carriers;
  if (document.machine_type == 1 && document.machine_setup) {
    for (const auto& turret : document.machine_setup->turrets->items) {
      carriers.push_back(turret_of(*turret, document));
    }
  } else if (document.machine_type == 2 && document.mill_setup) {
    carriers.push_back(magazine_of(*document.mill_setup, document));
  }
  return carriers;
}

}  // namespace deskhost
