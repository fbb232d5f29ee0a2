#include "deskhost/model/catalogue.h"

#include <algorithm>
#include <array>

#include "automation/member.h"

namespace deskhost::catalogue {

namespace {

using enum Kind;
using enum Classes;

constexpr Parameter table[] = {
    {"ToolStyle", whole, all, 1},
    {"ToolID", text, all, 2},
    {"ToolNumber", whole, all, 3},
    {"ToolUnit", code, all, 4},
    {"ToolMaterial", text, all, 5},
    {"SpindleDirection", code, all, 6},
    {"Coolant", code, all, 7},
    {"SimulationColor", code, all, 8},
    {"NumberOfFlutes", whole, milling, 9},
    {"CustomSetting1", text, all, 10},
    {"CustomSetting2", text, all, 11},
    {"CustomSetting3", text, all, 12},
    {"CustomSetting4", text, all, 13},
    {"CustomSetting5", text, all, 14},
    {"CustomSetting6", text, all, 15},
    {"CustomSetting7", text, all, 16},
    {"CustomSetting8", text, all, 17},
    {"CustomSetting9", text, all, 18},
    {"CustomSetting10", text, all, 19},
    {"Comment", text, all, 20},
    {"ToolDiameter", number, all, 21},
    {"ControlDiameter", number, all, 22},
    {"ToolLength", number, all, 23},
    {"ToolRadius", number, all, 24},
    {"ToolTip", code, milling, 25},
    {"CornerRadius", number, all, 26},
    {"CornerRadiusType", code, all, 27},
    {"ToolAngle", number, all, 28},
    {"TaperAngle", number, milling, 29},
    {"ChamferAngle", number, milling, 30},
    {"FluteLength", number, milling, 31},
    {"ThreadLength", number, milling, 32},
    {"ToolThickness", number, all, 33},
    {"InnerDiameter", number, all, 34},
    {"TipDiameter", number, milling, 35},
    {"TipDepth", number, milling, 36},
    {"ShankDiameter", number, milling, 37},
    {"HolderDiameter", number, all, 38},
    {"OverallLength", number, all, 39},
    {"Pitch", number, milling, 40},
    {"Orientation", orientation_code, all, 41},
    {"HolderID", text, all, 42},
    {"HolderType", code, all, 43},
    {"HolderStyle", code, all, 44},
    {"HolderLeadAngle", number, turning, 45},
    {"HolderHand", code, turning, 46},
    {"HolderDimensionE", number, all, 47},
    {"HolderDimensionD", number, all, 48},
    {"HolderDimensionC", number, all, 49},
    {"HolderDimensionB", number, all, 50},
    {"HolderDimensionA", number, all, 51},
    {"HolderClearanceAngle", number, all, 52},
    {"HolderClampStyle", code, all, 53},
    {"HolderShankDiameter", number, all, 54},
    {"HolderDimensionF", number, all, 55},
    {"HolderBoringBarType", code, turning, 56},
    {"HolderComment", text, all, 57},
    {"InsertID", text, turning, 58},
    {"InsertType", code, turning, 59},
    {"InsertThickness", number, turning, 60},
    {"InsertShape", code, turning, 61},
    {"InsertTolerance", code, turning, 62},
    {"InsertCrossSectionType", code, turning, 63},
    {"InsertSize", code, turning, 64},
    {"InsertHand", code, turning, 65},
    {"InsertDimensionY", number, turning, 66},
    {"InsertDimensionX", number, turning, 67},
    {"InsertComment", text, turning, 68},
    {"ToolFilletRadius", number, all, 69},
    {"ToolAngle1", number, all, 70},
    {"InsertWidth", number, turning, 71},
    {"InsertLength", number, turning, 72},
    {"TouchOffAngle", number, turning, 73},
    {"SideReliefAngle", number, turning, 74},
    {"ReliefAngle", number, turning, 75},
    {"ToolNoseCompensation", code, turning, 76},
    {"ToolAngle0", number, all, 77},
    {"MiniBoringL2", number, turning, 78},
    {"MiniBoringL1", number, turning, 79},
    {"MiniBoringL0", number, turning, 80},
    {"MiniBoringH", number, turning, 81},
    {"LatheToolOrientation", orientation_code, all, 82},
    {"EdgeShiftRegister", whole, turning, 83},
    {"ToolNoseRadius", number, turning, 84},
    {"ControlEdge", code, turning, 85},
    {"TurretID", whole, all, 86},
    {"StationID", whole, all, 87},
    {"ToolShiftX", number, all, 88},
    {"ToolShiftY", number, all, 89},
    {"ToolShiftZ", number, all, 90},
    {"LengthCompRegister", whole, all, 91},
    {"ZTCMovement", code, all, 92},
    {"YTCMovement", code, all, 93},
    {"XTCMovement", code, all, 94},
    {"ZTCLocation", number, all, 95},
    {"YTCLocation", number, all, 96},
    {"XTCLocation", number, all, 97},
    {"InitialClearance", number, all, 98},
    {"ThreadPerUnit", number, milling, 99},
    {"TipAngle", number, milling, 100},
    {"ShankAngle", number, milling, 101},
    {"ShankBottomLength", number, milling, 102},
    {"ShankTopDiameter", number, milling, 103},
    {"ShankType", code, milling, 104},
    {"ShankExtension", number, milling, 105},
    {"TopRadius", number, milling, 106},
    {"SlotMillType", code, milling, 107},
    {"BottomRadius", number, milling, 108},
    {"InsertHeight", number, turning, 109},
    {"ICDiameter", number, turning, 110},
    {"DiamondAngle", number, turning, 111},
    {"BottomClearance", number, milling, 112},
    {"OrientationAngle", number, all, 113},
    {"NumberOfInserts", whole, milling, 114},
    {"CuttingLength", number, milling, 115},
    {"BoringBarType", code, turning, 116},
    {"ChamferShape", code, milling, 117},
    {"TipLength", number, milling, 118},
    {"ToolUpperDiameter", number, milling, 119},
    {"ThreadAngle", number, milling, 120},
    {"ThreadType", code, milling, 121},
};
constexpr std::size_t count = std::size(table);
static_assert(count <= max_parameters);

constexpr std::array turning_classes{16, 17, 18, 19, 22, 23, 24};
constexpr std::array neutral_classes{15, 21};
constexpr std::int32_t last_class = 25;

// Names by identity, open-addressed: a parameter is looked up twice for every field of an import.
constexpr std::size_t buckets = 1024;
constexpr std::uint8_t no_parameter = 0xff;

constexpr std::size_t bucket_of(std::uint64_t identity) {
  return (identity ^ identity >> 32) % buckets;
}

struct NameTable {
  std::array<std::uint8_t, buckets> place{};
  std::array<std::uint64_t, count> identity{};
};

constexpr NameTable make_names() {
  NameTable names;
  names.place.fill(no_parameter);
  for (std::size_t i = 0; i < count; ++i) {
    names.identity[i] = automation::Member::named(table[i].name).id();
    std::size_t bucket = bucket_of(names.identity[i]);
    while (names.place[bucket] != no_parameter) bucket = (bucket + 1) % buckets;
    names.place[bucket] = static_cast<std::uint8_t>(i);
  }
  return names;
}
constexpr NameTable names = make_names();

constexpr Index required(std::string_view name) {
  for (Index i = 0; i < count; ++i) {
    if (table[i].name == name) return i;
  }
  throw "no such parameter";  // ends the compilation
}

/// The parameters that the classes of one kind have, both ways.
struct Selection {
  std::array<std::uint8_t, count> parameters{};
  std::array<std::uint8_t, count> slot{};
  std::size_t size = 0;
};

constexpr Selection select(Classes own) {
  Selection chosen;
  chosen.slot.fill(no_parameter);
  for (std::size_t i = 0; i < count; ++i) {
    if (table[i].classes != all && table[i].classes != own) continue;
    chosen.slot[i] = static_cast<std::uint8_t>(chosen.size);
    chosen.parameters[chosen.size++] = static_cast<std::uint8_t>(i);
  }
  return chosen;
}
constexpr Selection of_turning = select(turning);
constexpr Selection of_milling = select(milling);
constexpr Selection of_neutral = select(all);

const Selection& selection(std::int32_t tool_class) noexcept {
  if (std::ranges::find(turning_classes, tool_class) != turning_classes.end()) return of_turning;
  if (std::ranges::find(neutral_classes, tool_class) != neutral_classes.end()) return of_neutral;
  return of_milling;
}

}  // namespace

constinit const Index tool_style = required("ToolStyle");
constinit const Index tool_id = required("ToolID");
constinit const Index tool_number = required("ToolNumber");
constinit const Index turret_id = required("TurretID");
constinit const Index station_id = required("StationID");
constinit const Index tool_shift_x = required("ToolShiftX");
constinit const Index tool_shift_y = required("ToolShiftY");
constinit const Index tool_shift_z = required("ToolShiftZ");

std::span<const Parameter> parameters() noexcept {
  return table;
}

std::optional<Index> find(std::string_view name) noexcept {
  const std::uint64_t identity = automation::Member::named(name).id();
  for (std::size_t bucket = bucket_of(identity);; bucket = (bucket + 1) % buckets) {
    const std::uint8_t place = names.place[bucket];
    if (place == no_parameter) return std::nullopt;
    if (names.identity[place] == identity) return place;
  }
}

bool is_tool_class(std::int32_t tool_class) noexcept {
  return tool_class >= 1 && tool_class <= last_class;
}

std::span<const std::uint8_t> parameters_of(std::int32_t tool_class) noexcept {
  const Selection& chosen = selection(tool_class);
  return std::span(chosen.parameters).first(chosen.size);
}

std::optional<std::size_t> slot_of(std::int32_t tool_class, Index parameter) noexcept {
  const std::uint8_t slot = selection(tool_class).slot[parameter];
  if (slot == no_parameter) return std::nullopt;
  return slot;
}

}  // namespace deskhost::catalogue
