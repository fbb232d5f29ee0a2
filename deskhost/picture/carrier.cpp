#include "deskhost/picture/carrier.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

#include "deskhost/picture/svg.h"

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

ToolMark mark_of(const Tool& tool, const Document& document) {
  constexpr double inch = 25.4;
  ToolMark mark{tool.name(),
                orientation_of(tool),
                {length_of(tool.value("ToolShiftX")), length_of(tool.value("ToolShiftY")),
                 length_of(tool.value("ToolShiftZ"))},
                1,
                {}};
  const std::int32_t unit = whole_of(tool.value("ToolUnit"));
  const bool is_in_inches = unit == inches;
  if ((is_in_inches || unit == millimetres) && is_in_inches != (document.unit_system == inches)) {
    mark.scale = is_in_inches ? inch : 1 / inch;
    mark.unit = is_in_inches ? "in" : "mm";
  }
  return mark;
}

/// The place of the tool's station among a carrier's stations, from 0; none where it isn't there.
std::optional<std::size_t> place_of(const Tool& tool, std::size_t stations) {
  const std::int32_t station = whole_of(tool.value("StationID"));
  if (station < 1 || static_cast<std::size_t>(station) > stations) return std::nullopt;
  return static_cast<std::size_t>(station - 1);
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
    if (whole_of(tool->value("TurretID")) != turret.number) continue;
    if (const auto place = place_of(*tool, carrier.spots.size()))
      carrier.spots[*place].tools.push_back(mark_of(*tool, document));
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
    if (const auto place = place_of(*tool, carrier.spots.size()))
      carrier.spots[*place].tools.push_back(mark_of(*tool, document));
  }
  return carrier;
}

}  // namespace

std::string ToolMark::shift_text(std::size_t axis) const {
  return short_number(shift[axis]) + (unit.empty() ? "" : " " + unit);
}

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

std::vector<const Tool*> tools_on_no_station(const Document& document) {
  const bool has_turrets = document.machine_type == 1 && document.machine_setup;
  const bool is_mill = document.machine_type == 2 && document.mill_setup;
  const auto stands = [&](const Tool& tool) {
    if (is_mill) return place_of(tool, document.mill_setup->stations->items.size()).has_value();
    const std::int32_t number = has_turrets ? whole_of(tool.value("TurretID")) : 0;
    if (number < 1 || static_cast<std::size_t>(number) > document.machine_setup->turrets->items.size())
      return false;
    const auto& turret = *document.machine_setup->turrets->items[static_cast<std::size_t>(number - 1)];
    return place_of(tool, turret.stations->items.size()).has_value();
  };
  std::vector<const Tool*> tools;
  for (const auto& tool : document.tools().all()) {
    if (!stands(*tool)) tools.push_back(tool.get());
  }
  return tools;
}

}  // namespace deskhost
