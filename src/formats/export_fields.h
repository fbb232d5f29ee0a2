#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

/// The fields of a data line of the tool export file, by position alone.
namespace formats {

enum class FieldKind : std::uint8_t {
  text,
  number,    ///< a whole number
  length,    ///< a decimal number in the tool's unit
  angle,     ///< a decimal number as the host takes it
  code,      ///< a number or a short word of a list that the host defines
  value,     ///< of a form that only the host knows
  reserved,  ///< there in every line, and not read
};

struct ExportField {
  std::size_t number;
  std::string_view name;  ///< that of the parameter, where it is handed on to one; empty where it is reserved
  FieldKind kind;
};

/// A data line has at least that many; what stands behind them is ignored.
inline constexpr std::size_t field_count = 127;

inline constexpr std::array<ExportField, field_count> export_fields{{
    {0, "ToolStyle", FieldKind::number},
    {1, "ToolClass", FieldKind::number},
    {2, "ToolID", FieldKind::text},
    {3, "ToolNumber", FieldKind::number},
    {4, "ToolUnit", FieldKind::code},
    {5, "ToolMaterial", FieldKind::text},
    {6, "SpindleDirection", FieldKind::code},
    {7, "Coolant", FieldKind::code},
    {8, "SimulationColor", FieldKind::code},
    {9, "NumberOfFlutes", FieldKind::number},
    {10, "CustomSetting1", FieldKind::text},
    {11, "CustomSetting2", FieldKind::text},
    {12, "CustomSetting3", FieldKind::text},
    {13, "CustomSetting4", FieldKind::text},
    {14, "CustomSetting5", FieldKind::text},
    {15, "OrientationCode", FieldKind::code},
    {16, "CustomSetting7", FieldKind::text},
    {17, "CustomSetting8", FieldKind::text},
    {18, "CustomSetting9", FieldKind::text},
    {19, "CustomSetting10", FieldKind::text},
    {20, "Comment", FieldKind::text},
    {21, "ToolDiameter", FieldKind::length},
    {22, "ControlDiameter", FieldKind::length},
    {23, "ToolLength", FieldKind::length},
    {24, "ToolRadius", FieldKind::length},
    {25, "ToolTip", FieldKind::value},
    {26, "CornerRadius", FieldKind::length},
    {27, "CornerRadiusType", FieldKind::code},
    {28, "ToolAngle", FieldKind::angle},
    {29, "TaperAngle", FieldKind::angle},
    {30, "ChamferAngle", FieldKind::angle},
    {31, "FluteLength", FieldKind::length},
    {32, "ThreadLength", FieldKind::length},
    {33, "ToolThickness", FieldKind::length},
    {34, "InnerDiameter", FieldKind::length},
    {35, "TipDiameter", FieldKind::length},
    {36, "TipDepth", FieldKind::length},
    {37, "ShankDiameter", FieldKind::length},
    {38, "HolderDiameter", FieldKind::length},
    {39, "OverallLength", FieldKind::length},
    {40, "Pitch", FieldKind::length},
    {41, "Orientation", FieldKind::code},
    {42, "HolderID", FieldKind::text},
    {43, "HolderType", FieldKind::code},
    {44, "HolderStyle", FieldKind::code},
    {45, "HolderLeadAngle", FieldKind::angle},
    {46, "HolderHand", FieldKind::code},
    {47, "HolderDimensionE", FieldKind::length},
    {48, "HolderDimensionD", FieldKind::length},
    {49, "HolderDimensionC", FieldKind::length},
    {50, "HolderDimensionB", FieldKind::length},
    {51, "HolderDimensionA", FieldKind::length},
    {52, "HolderClearanceAngle", FieldKind::angle},
    {53, "HolderClampStyle", FieldKind::code},
    {54, "HolderShankDiameter", FieldKind::length},
    {55, "HolderDimensionF", FieldKind::length},
    {56, "HolderBoringBarType", FieldKind::code},
    {57, "HolderComment", FieldKind::text},
    {58, "InsertID", FieldKind::text},
    {59, "", FieldKind::reserved},
    {60, "InsertType", FieldKind::code},
    {61, "InsertThickness", FieldKind::length},
    {62, "InsertShape", FieldKind::code},
    {63, "InsertTolerance", FieldKind::code},
    {64, "InsertCrossSectionType", FieldKind::code},
    {65, "InsertSize", FieldKind::value},
    {66, "InsertHand", FieldKind::code},
    {67, "InsertDimensionY", FieldKind::length},
    {68, "InsertDimensionX", FieldKind::length},
    {69, "InsertComment", FieldKind::text},
    {70, "ToolFilletRadius", FieldKind::length},
    {71, "ToolAngle1", FieldKind::angle},
    {72, "InsertWidth", FieldKind::length},
    {73, "InsertLength", FieldKind::length},
    {74, "TouchOffAngle", FieldKind::angle},
    {75, "", FieldKind::reserved},
    {76, "SideReliefAngle", FieldKind::angle},
    {77, "ReliefAngle", FieldKind::angle},
    {78, "ToolNoseCompensation", FieldKind::code},
    {79, "ToolAngle0", FieldKind::angle},
    {80, "MiniBoringL2", FieldKind::length},
    {81, "MiniBoringL1", FieldKind::length},
    {82, "MiniBoringL0", FieldKind::length},
    {83, "MiniBoringH", FieldKind::length},
    {84, "LatheToolOrientation", FieldKind::code},
    {85, "EdgeShiftRegister", FieldKind::number},
    {86, "ToolNoseRadius", FieldKind::length},
    {87, "ControlEdge", FieldKind::code},
    {88, "TurretID", FieldKind::number},
    {89, "StationID", FieldKind::number},
    {90, "ToolShiftX", FieldKind::length},
    {91, "ToolShiftY", FieldKind::length},
    {92, "ToolShiftZ", FieldKind::length},
    {93, "LengthCompRegister", FieldKind::number},
    {94, "ZTCMovement", FieldKind::code},
    {95, "YTCMovement", FieldKind::code},
    {96, "XTCMovement", FieldKind::code},
    {97, "ZTCLocation", FieldKind::length},
    {98, "YTCLocation", FieldKind::length},
    {99, "XTCLocation", FieldKind::length},
    {100, "InitialClearance", FieldKind::length},
    {101, "ToolGroup", FieldKind::text},
    {102, "UserModelFlag", FieldKind::number},
    {103, "ThreadPerUnit", FieldKind::number},
    {104, "", FieldKind::reserved},
    {105, "TipAngle", FieldKind::angle},
    {106, "ShankAngle", FieldKind::angle},
    {107, "ShankBottomLength", FieldKind::length},
    {108, "ShankTopDiameter", FieldKind::length},
    {109, "ShankType", FieldKind::code},
    {110, "ShankExtension", FieldKind::length},
    {111, "TopRadius", FieldKind::length},
    {112, "SlotMillType", FieldKind::code},
    {113, "BottomRadius", FieldKind::length},
    {114, "InsertHeight", FieldKind::length},
    {115, "ICDiameter", FieldKind::length},
    {116, "DiamondAngle", FieldKind::angle},
    {117, "BottomClearance", FieldKind::length},
    {118, "OrientationAngle", FieldKind::angle},
    {119, "NumberOfInserts", FieldKind::number},
    {120, "CuttingLength", FieldKind::length},
    {121, "BoringBarType", FieldKind::code},
    {122, "ChamferShape", FieldKind::code},
    {123, "TipLength", FieldKind::length},
    {124, "ToolUpperDiameter", FieldKind::length},
    {125, "ThreadAngle", FieldKind::angle},
    {126, "ThreadType", FieldKind::code},
}};

/// The number of the field of that name, for constant expressions: a name that no field has doesn't compile.
constexpr std::size_t field_number(std::string_view name) {
  std::size_t number = 0;
  while (name.empty() || export_fields.at(number).name != name) ++number;
  return number;
}

static_assert([] {
  for (std::size_t i = 0; i < field_count; ++i) {
    if (export_fields[i].number != i) return false;
  }
  return true;
}());

/// The fields that are treated in a way of their own.
enum Field : std::size_t {
  field_tool_style = field_number("ToolStyle"),
  field_tool_class = field_number("ToolClass"),
  field_tool_id = field_number("ToolID"),
  field_tool_number = field_number("ToolNumber"),
  field_tool_unit = field_number("ToolUnit"),
  field_tool_material = field_number("ToolMaterial"),
  field_orientation_code = field_number("OrientationCode"),
  field_taper_angle = field_number("TaperAngle"),
  field_orientation = field_number("Orientation"),
  field_lathe_tool_orientation = field_number("LatheToolOrientation"),
  field_turret_id = field_number("TurretID"),
  field_station_id = field_number("StationID"),
  field_tool_shift_x = field_number("ToolShiftX"),
  field_tool_shift_y = field_number("ToolShiftY"),
  field_tool_shift_z = field_number("ToolShiftZ"),
  field_length_comp_register = field_number("LengthCompRegister"),
  field_tool_group = field_number("ToolGroup"),
  field_user_model_flag = field_number("UserModelFlag"),
};

}  // namespace formats
