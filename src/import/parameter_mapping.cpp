#include "import/parameter_mapping.h"

#include <array>
#include <cstdint>

#include "automation/number.h"
#include "formats/tool_identity.h"
#include "foundation/failures.h"
#include "foundation/global.h"

namespace mQuorvex {
namespace {

using automation::Value;

/// Where the value of a parameter comes from.
enum class From : std::uint8_t {
  field,              // the field's text, unchanged
  field_or_zero,      // an empty field becomes "0"
  field_if_given,     // an empty field leaves the parameter alone
  configuration,      // a field that is blank or "0" gives way to the setting of the parameter's name
  material,           // the knowledge base's identifier
  lathe_orientation,  // fields 15 and 84 together
  flag,               // no parameter: marks the tool at this place of the order
};

struct Write {
  const char* parameter;
  std::size_t field;
  From from = From::field;
};

// The order in which every tool, new or not, gets its parameters. The host takes ToolUnit as the unit of all
// that follows, and the second LatheToolOrientation has to stand behind the geometry.
constexpr auto writes = std::to_array<Write>({
    {"ToolUnit", 4},
    {"ToolMaterial", field_tool_material, From::material},
    {"SpindleDirection", 6},
    {"Coolant", 7},
    {"SimulationColor", 8},
    {"NumberOfFlutes", 9},
    {"CustomSetting1", 10},
    {"CustomSetting2", 11},
    {"CustomSetting3", 12},
    {"CustomSetting4", 13},
    {"CustomSetting5", 14},
    {"CustomSetting6", field_lathe_tool_orientation},
    {"CustomSetting7", 16},
    {"CustomSetting8", 17},
    {"CustomSetting9", 18},
    {"CustomSetting10", 19},
    {"Comment", 20},
    {"ToolDiameter", 21},
    {"ControlDiameter", 22},
    {"ToolLength", 23},
    {"ToolRadius", 24},
    {"ToolTip", 25},
    {"CornerRadius", 26},
    {"CornerRadiusType", 27},
    {"ToolAngle", 28},
    {"TaperAngle", field_taper_angle, From::field_or_zero},
    {"ChamferAngle", 30},
    {"FluteLength", 31},
    {"ThreadLength", 32},
    {"ToolThickness", 33},
    {"InnerDiameter", 34},
    {"TipDiameter", 35},
    {"TipDepth", 36},
    {"ShankDiameter", 37},
    {"HolderDiameter", 38},
    {"OverallLength", 39},
    {"Pitch", 40},
    {"HolderID", 42},
    {"HolderType", 43},
    {"HolderStyle", 44},
    {"HolderLeadAngle", 45},
    {"HolderHand", 46},
    {"HolderDimensionE", 47},
    {"HolderDimensionD", 48},
    {"HolderDimensionC", 49},
    {"HolderDimensionB", 50},
    {"HolderDimensionA", 51},
    {"HolderClearanceAngle", 52},
    {"HolderClampStyle", 53},
    {"HolderShankDiameter", 54},
    {"HolderDimensionF", 55},
    {"HolderBoringBarType", 56},
    {"HolderComment", 57},
    {"InsertID", 58},
    {"InsertType", 60},
    {"InsertThickness", 61},
    {"InsertShape", 62},
    {"InsertTolerance", 63},
    {"InsertCrossSectionType", 64},
    {"InsertSize", 65},
    {"InsertHand", 66},
    {"InsertDimensionY", 67},
    {"InsertDimensionX", 68},
    {"InsertComment", 69},
    {"ToolFilletRadius", 70},
    {"ToolAngle1", 71},
    {"InsertWidth", 72},
    {"InsertLength", 73},
    {"TouchOffAngle", 74},
    {"SideReliefAngle", 76},
    {"ReliefAngle", 77},
    {"ToolNoseCompensation", 78},
    {"ToolAngle0", 79},
    {"MiniBoringL2", 80},
    {"MiniBoringL1", 81},
    {"MiniBoringL0", 82},
    {"MiniBoringH", 83},
    {"LatheToolOrientation", field_lathe_tool_orientation, From::lathe_orientation},
    {"EdgeShiftRegister", 85},
    {"ToolNoseRadius", 86},
    {"ControlEdge", 87},
    {"ToolShiftX", field_tool_shift_x},
    {"ToolShiftY", field_tool_shift_y},
    {"ToolShiftZ", field_tool_shift_z},
    {"LengthCompRegister", field_length_comp_register, From::field_if_given},
    {"ZTCMovement", 94, From::configuration},
    {"YTCMovement", 95, From::configuration},
    {"XTCMovement", 96, From::configuration},
    {"ZTCLocation", 97},
    {"YTCLocation", 98},
    {"XTCLocation", 99},
    {"InitialClearance", 100},
    {"ThreadPerUnit", 103},
    {"", 0, From::flag},
    {"TipAngle", 105},
    {"ShankAngle", 106},
    {"ShankBottomLength", 107},
    {"ShankTopDiameter", 108},
    {"ShankType", 109},
    {"ShankExtension", 110},
    {"TopRadius", 111},
    {"SlotMillType", 112},
    {"BottomRadius", 113},
    {"InsertHeight", 114},
    {"ICDiameter", 115},
    {"DiamondAngle", 116},
    {"BottomClearance", 117},
    {"OrientationAngle", 118},
    {"NumberOfInserts", 119},
    {"CuttingLength", 120},
    {"BoringBarType", 121},
    {"ChamferShape", 122},
    {"TipLength", 123},
    {"ToolUpperDiameter", 124},
    {"ThreadAngle", 125},
    {"ThreadType", 126},
});

void write(const host::ToolParameters& tool, std::string_view parameter, const Value& value) {
  skip_failure([&] { tool.Item(parameter).Value(value); });
}

// The default of every parameter that the configuration can give.
std::string configured(std::string_view parameter, const std::string& given) {
  return global::GetCfgValue(parameter, given, "1");
}

// A text is the file's; an automatic number is a number.
Value tool_number(const ToolRecord& record, DocumentTools& tools) {
  const std::string given = record.text(field_tool_number);
  const auto number = automation::read_number(given);
  if (!number || *number != 0) return given;
  double lowest = 1;
  skip_failure([&] { lowest = tools.lowest_free_number(); });
  return lowest;
}

bool stations_follow_tool_numbers() {
  return passes(
             [] { return global::Application().Document().MachineType() == host::machine_with_turrets; }) &&
         passes([] {
           constexpr std::int32_t kind_without_own_stations = 5;
           const host::Turrets turrets = global::Application().Document().MachineSetup().Turrets();
           return turrets.Item(1).Kind() != kind_without_own_stations;
         });
}

void write_station(const host::ToolParameters& tool, const ToolRecord& record, const Value& number) {
  const std::string station = record.text_or_zero(field_station_id);
  if (stations_follow_tool_numbers()) {
    write(tool, "StationID", station != "0" ? Value(station) : number);
  } else {
    skip_failure([&] { tool.Item("StationID").Value(Value(configured("StationID", station)).to_int32()); });
  }
}

// What only a new tool gets; on one that the document has, these stay as they are.
void write_place(const host::ToolParameters& tool, const ToolRecord& record, DocumentTools& tools) {
  const Value number = tool_number(record, tools);
  write(tool, "ToolNumber", number);
  skip_failure([&] {
    const std::string turret = configured("TurretID", record.text_or_zero(field_turret_id));
    tool.Item("TurretID").Value(Value(turret).to_int32());
  });
  write_station(tool, record, number);
  if (passes([&] { return number.to_double() < 999; })) write(tool, "LengthCompRegister", number);
  write(tool, "LatheToolOrientation", record.lathe_tool_orientation);
  skip_failure(
      [&] { tool.Item("Orientation").Value(configured("Orientation", record.text(field_orientation))); });
}

void write_in_order(const host::ToolParameters& tool, const ToolRecord& record, const Write& row) {
  switch (row.from) {
    case From::field:
      write(tool, row.parameter, record.text(row.field));
      break;
    case From::field_or_zero:
      write(tool, row.parameter, record.text_or_zero(row.field));
      break;
    case From::field_if_given:
      if (!record.fields->bytes(row.field).empty()) write(tool, row.parameter, record.text(row.field));
      break;
    case From::configuration:
      skip_failure(
          [&] { tool.Item(row.parameter).Value(configured(row.parameter, record.text(row.field))); });
      break;
    case From::material:
      write(tool, row.parameter, record.material);
      break;
    case From::lathe_orientation:
      write(tool, row.parameter, record.lathe_tool_orientation);
      break;
    case From::flag:
      skip_failure([&] { tool.Flag(true); });
      break;
  }
}

}  // namespace

void WriteToolParameters(const host::ToolParameters& tool, bool is_new, const ToolRecord& record,
                         DocumentTools& tools) {
  write(tool, "ToolStyle", record.text(field_tool_style));
  write(tool, "ToolID", record.text(field_tool_id));
  if (is_new) write_place(tool, record, tools);
  for (const char* recorded : {"OldLatheToolOrientation", "OldOrientation"}) {
    skip_failure([&] { global::GetCustomProperty(tool, recorded, host::type_long).Value(0); });
  }
  for (const Write& row : writes) write_in_order(tool, record, row);
  // The model file shows the holder too, so the host mustn't draw a second one.
  const std::string model = tool_identity::model_file(record.text(field_tool_id));
  if (passes([&] { return global::FileExists(global::user_model_path(model)); })) {
    write(tool, "HolderDimensionA", std::int16_t{0});
    write(tool, "HolderDimensionD", std::int16_t{0});
  }
}

}  // namespace mQuorvex
