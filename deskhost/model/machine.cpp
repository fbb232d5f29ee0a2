#include "deskhost/model/machine.h"

#include <algorithm>
#include <charconv>

namespace deskhost {

using automation::Args;
using automation::id;
using automation::Member;
using automation::Value;

namespace {

std::string numbered(std::string_view name, int number) {
  return std::string(name) + "(" + std::to_string(number) + ")";
}

/// k where `name` is `stem`k with 1 <= k <= `count`, regardless of the stem's case; else 0.
std::size_t number_behind(std::string_view stem, std::string_view name, std::size_t count) {
  if (name.size() <= stem.size()) return 0;
  const std::string_view digits = name.substr(stem.size());
  if (Member::named(name.substr(0, stem.size())) != Member::named(stem) || digits[0] == '0') return 0;
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  const bool is_number = error == std::errc{} && end == digits.data() + digits.size();
  return is_number && number <= count ? number : 0;
}

}  // namespace

std::string Station::trace_name() const {
  const std::string owner = turret == 0 ? "MillSetup" : numbered("Turret", turret);
  return owner + "." + numbered("Station", place);
}

double* Station::length_or_angle(Member member) noexcept {
  switch (member.id()) {
    case id("RadialOffset"):
      return &radial_offset;
    case id("AxialOffset"):
      return &axial_offset;
    case id("TurretAngle"):
      return &turret_angle;
    case id("TiltAngle"):
      return &tilt_angle;
    default:
      return nullptr;
  }
}

Value Station::get(Member member, Args args) {
  if (member.id() == id("Number")) return number;
  if (member.id() == id("ToolReference")) return tool_reference;
  if (const double* field = length_or_angle(member)) return *field;
  return DeskObject::get(member, args);
}

void Station::put(Member member, Args args, const Value& value) {
  if (member.id() == id("ToolReference")) {
    tool_reference = value.to_int32();
  } else if (double* field = length_or_angle(member)) {
    *field = finite_number(value);
  } else {
    DeskObject::put(member, args, value);
  }
}

std::string SolidModel::trace_name() const {
  const auto collection = collection_.lock();
  if (!collection) return "SolidModel";
  const auto& all = collection->items;
  const auto found = std::ranges::find(all, this, [](const auto& solid) { return solid.get(); });
  const std::string owner = numbered("Turret", collection->turret);
  if (found == all.end()) return owner + ".Solid";
  return owner + "." + numbered("Solid", static_cast<int>(found - all.begin()) + 1);
}

Value SolidModel::get(Member member, Args args) {
  switch (member.id()) {
    case id("Name"):
      return name;
    case id("ModelPath"):
      return model_path;
    case id("Color"):
      return color;
    case id("Shown"):
      return shown;
    case id("Unmounted"):
      return unmounted;
    case id("Station"):
      return Value(station);
    default:
      return DeskObject::get(member, args);
  }
}

void SolidModel::put(Member member, Args args, const Value& value) {
  switch (member.id()) {
    case id("Name"):
      name = value.to_text();
      return;
    case id("ModelPath"):
      model_path = value.to_text();
      return;
    case id("Color"):
      color = value.to_int32();
      return;
    case id("Shown"):
      shown = value.to_bool();
      return;
    case id("Unmounted"):
      unmounted = value.to_bool();
      return;
    case id("Station"):
      station = object_argument<Station>(value);
      station_place = station ? station->place : 0;
      return;
    default:
      DeskObject::put(member, args, value);
  }
}

SolidModels::SolidModels(int turret_number)
    : Collection(numbered("Turret", turret_number) + ".Solids"), turret(turret_number) {}

Value SolidModels::call(Member member, Args args) {
  switch (member.id()) {
    case id("Add"):
      return Value(add());
    case id("Remove"):
      items.erase(items.begin() + static_cast<std::ptrdiff_t>(index_of(argument(args, 0), items.size())));
      return {};
    default:
      return Collection::call(member, args);
  }
}

std::shared_ptr<SolidModel> SolidModels::add() {
  return items.emplace_back(
      std::make_shared<SolidModel>(std::static_pointer_cast<SolidModels>(shared_from_this())));
}

Turret::Turret(int turret_number)
    : number(turret_number),
      stations(std::make_shared<Stations>(numbered("Turret", turret_number) + ".Stations")),
      solids(std::make_shared<SolidModels>(turret_number)) {}

std::string Turret::trace_name() const {
  return numbered("Turret", number);
}

Value Turret::get(Member member, Args args) {
  switch (member.id()) {
    case id("Name"):
      return name;
    case id("Kind"):
      return kind;
    case id("Stations"):
      return Value(stations);
    case id("Solids"):
      return Value(solids);
    default:
      return DeskObject::get(member, args);
  }
}

std::string Program::trace_name() const {
  return numbered("Program", place);
}

Value Program::get(Member member, Args args) {
  switch (member.id()) {
    case id("Number"):
      return number;
    case id("Name"):
      return name;
    default:
      return DeskObject::get(member, args);
  }
}

Value MachineDefinition::get(Member member, Args args) {
  switch (member.id()) {
    case id("MachineOriginX"):
      return origin[0];
    case id("MachineOriginY"):
      return origin[1];
    case id("MachineOriginZ"):
      return origin[2];
    default:
      return DeskObject::get(member, args);
  }
}

Value Setup::get(Member member, Args args) {
  switch (member.id()) {
    case id("ProgramNumber"):
      return program_number;
    case id("ProgramName"):
      return program_name;
    case id("CustomMachineDefinition"):
      return Value(definition);
    default:
      break;
  }
  if (const auto k = number_behind("CustomSetting", member.name(), custom_settings.size())) {
    return custom_settings[k - 1];
  }
  if (const auto k = number_behind("CustomSettingStr", member.name(), custom_setting_texts.size())) {
    return custom_setting_texts[k - 1];
  }
  return DeskObject::get(member, args);
}

Value MachineSetup::get(Member member, Args args) {
  switch (member.id()) {
    case id("Turrets"):
      return Value(turrets);
    case id("Programs"):
      return Value(programs);
    default:
      return Setup::get(member, args);
  }
}

Value MillSetup::get(Member member, Args args) {
  switch (member.id()) {
    case id("SpindleSize"):
      return spindle_size;
    case id("Stations"):
      return Value(stations);
    default:
      return Setup::get(member, args);
  }
}

}  // namespace deskhost
