#include "import/parameter_mapping.h"

#include <array>
#include <cstdint>

#include "automation/number.h"
#include "formats/tool_identity.h"
#include "foundation/global.h"

namespace mQuorvex {
namespace {

using automation::Value;
using formats::ExportField;

/// A tool that gets its parameters, and the line that they come from.
struct Target {
  const host::ToolParameters& tool;
  const ToolRecord& record;
  DocumentTools& tools;
  shapes::MachineView& machine;
  Value number;  ///< of a new tool, from the write of its ToolNumber on
};

/// How a field gets into its parameter. What the host refuses is dropped, each write by itself, and so is a
/// parameter that the tool's class doesn't have.
using Rule = void (*)(Target& target, const ExportField& field);

void write(const Target& target, std::string_view parameter, const Value& value) {
  skip_failure([&] { target.tool.Item(parameter).Value(value); });
}

// The default of every parameter that the configuration can give.
std::string configured(std::string_view parameter, const std::string& given) {
  return global::GetCfgValue(parameter, given, "1");
}

// --- The rules.

void unchanged(Target& target, const ExportField& field) {
  write(target, field.name, target.record.text(field.number));
}

void empty_is_zero(Target& target, const ExportField& field) {
  write(target, field.name, target.record.text_or_zero(field.number));
}

void unless_empty(Target& target, const ExportField& field) {
  if (!target.record.fields->bytes(field.number).empty()) unchanged(target, field);
}

// A field that is blank or "0" gives way to the setting of the parameter's name.
void or_configured(Target& target, const ExportField& field) {
  skip_failure(
      [&] { target.tool.Item(field.name).Value(configured(field.name, target.record.text(field.number))); });
}

// A text is the file's; an automatic number is a number.
void tool_number(Target& target, const ExportField& field) {
  target.number = target.record.text(field.number);
  const auto number = automation::read_number(target.record.text(field.number));
  if (number && *number == 0) {
    double lowest = 1;
    skip_failure([&] { lowest = target.tools.lowest_free_number(); });
    target.number = lowest;
  }
  write(target, field.name, target.number);
}

void configured_number(Target& target, const ExportField& field) {
  skip_failure([&] {
    const std::string given = target.record.text_or_zero(field.number);
    target.tool.Item(field.name).Value(Value(configured(field.name, given)).to_int32());
  });
}

bool stations_follow_tool_numbers(shapes::MachineView& machine) {
  return passes([&] { return machine.type() == host::machine_with_turrets; }) && passes([&] {
           constexpr std::int32_t kind_without_own_stations = 5;
           return machine.turrets().Item(1).Kind() != kind_without_own_stations;
         });
}

void station(Target& target, const ExportField& field) {
  if (!stations_follow_tool_numbers(target.machine)) return configured_number(target, field);
  const std::string given = target.record.text_or_zero(field.number);
  write(target, field.name, given != "0" ? Value(given) : target.number);
}

void register_of_number(Target& target, const ExportField& field) {
  constexpr double numbers_without_register = 999;  // from here on
  if (passes([&] { return target.number.to_double() < numbers_without_register; })) {
    write(target, field.name, target.number);
  }
}

void lathe_orientation(Target& target, const ExportField& field) {
  write(target, field.name, target.record.lathe_tool_orientation);
}

// The position in the database; later work compares the present one with it.
void custom_setting_6(Target& target, const ExportField& field) {
  write(target, "CustomSetting6", target.record.text(field.number));
}

void material(Target& target, const ExportField& field) {
  write(target, field.name, target.record.material);
}

void recorded_orientations(Target& target, const ExportField& /*field*/) {
  for (const char* recorded : {"OldLatheToolOrientation", "OldOrientation"}) {
    skip_failure([&] { global::GetCustomProperty(target.tool, recorded, host::type_long).Value(0); });
  }
}

void flag(Target& target, const ExportField& /*field*/) {
  skip_failure([&] { target.tool.Flag(true); });
}

// The model file shows the holder too, so the host mustn't draw a second one.
void no_holder_beside_a_model(Target& target, const ExportField& /*field*/) {
  const std::string model = tool_identity::model_file(target.record.text(field_tool_id));
  if (!passes([&] { return global::FileExists(global::user_model_path(model)); })) return;
  write(target, "HolderDimensionA", std::int16_t{0});
  write(target, "HolderDimensionD", std::int16_t{0});
}

// --- The order.

enum class For : std::uint8_t { every_tool, new_tools };

/// A step: the fields from one to another, as formats/export_fields.h lists them, each handed by the rule to
/// the parameter of its name.
struct Step {
  std::size_t first;
  std::size_t last;
  Rule rule;
  For tools;
};

// A field without a name has no parameter: a run over one doesn't compile.
consteval Step run(std::string_view first, std::string_view last, Rule rule = unchanged) {
  const Step step{formats::field_number(first), formats::field_number(last), rule, For::every_tool};
  for (std::size_t field = step.first; field <= step.last; ++field) {
    if (formats::export_fields.at(field).name.empty()) throw "a reserved field";
  }
  return step;
}

consteval Step one(std::string_view field, Rule rule = unchanged, For tools = For::every_tool) {
  return {formats::field_number(field), formats::field_number(field), rule, tools};
}

consteval Step without_field(Rule rule) {
  return {0, 0, rule, For::every_tool};
}

// The host takes ToolUnit as the unit of all that follows, and the second LatheToolOrientation has to stand
// behind the geometry. What only new tools get stays on the others as the document has it.
constexpr std::array steps{
    one("ToolStyle"),
    one("ToolID"),
    one("ToolNumber", tool_number, For::new_tools),
    one("TurretID", configured_number, For::new_tools),
    one("StationID", station, For::new_tools),
    one("LengthCompRegister", register_of_number, For::new_tools),
    one("LatheToolOrientation", lathe_orientation, For::new_tools),
    one("Orientation", or_configured, For::new_tools),
    without_field(recorded_orientations),
    one("ToolUnit"),
    one("ToolMaterial", material),
    run("SpindleDirection", "NumberOfFlutes"),
    run("CustomSetting1", "CustomSetting5"),
    one("LatheToolOrientation", custom_setting_6),
    run("CustomSetting7", "CustomSetting10"),
    one("Comment"),
    run("ToolDiameter", "ToolAngle"),
    one("TaperAngle", empty_is_zero),
    run("ChamferAngle", "Pitch"),
    run("HolderID", "HolderComment"),
    one("InsertID"),
    run("InsertType", "TouchOffAngle"),
    run("SideReliefAngle", "MiniBoringH"),
    one("LatheToolOrientation", lathe_orientation),
    run("EdgeShiftRegister", "ControlEdge"),
    run("ToolShiftX", "ToolShiftZ"),
    one("LengthCompRegister", unless_empty),
    run("ZTCMovement", "XTCMovement", or_configured),
    run("ZTCLocation", "InitialClearance"),
    one("ThreadPerUnit"),
    without_field(flag),
    run("TipAngle", "ThreadType"),
    without_field(no_holder_beside_a_model),
};

}  // namespace

void WriteToolParameters(const host::ToolParameters& tool, bool is_new, const ToolRecord& record,
                         DocumentTools& tools, shapes::MachineView& machine) {
  Target target{tool, record, tools, machine, {}};
  for (const Step& step : steps) {
    if (step.tools == For::new_tools && !is_new) continue;
    for (std::size_t field = step.first; field <= step.last; ++field) {
      step.rule(target, formats::export_fields[field]);
    }
  }
}

}  // namespace mQuorvex
