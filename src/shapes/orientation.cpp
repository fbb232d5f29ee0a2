#include "shapes/orientation.h"

#include "foundation/failures.h"
#include "foundation/global.h"
#include "shapes/station_of_tool.h"
#include "shapes/tool_shift.h"

namespace shapes {
namespace {

bool orientation_changed(const host::Tool& tool) {
  std::int32_t style = 0;
  skip_failure([&] { style = tool.Style(); });
  const bool lathe = global::is_lathe_style(style);
  const char* recorded = lathe ? "OldLatheToolOrientation" : "OldOrientation";
  const char* present = lathe ? "LatheToolOrientation" : "Orientation";
  return passes([&] {
    const automation::Value old = global::GetCustomProperty(tool, recorded, host::type_long).Value();
    return !equal(old, tool.ToolParameters().Item(present).Value());
  });
}

bool is_of(MachineView& machine, std::int32_t type) {
  return passes([&] { return machine.type() == type; });
}

void clear_shift(const host::Tool& tool) {
  skip_failure([&] { tool.ToolShiftX(0.0); });
  skip_failure([&] { tool.ToolShiftY(0.0); });
  skip_failure([&] { tool.ToolShiftZ(0.0); });
}

void update_on_turret(const host::Tool& tool, MachineView& machine) {
  const host::Station station = station_on_turret(tool, machine);
  if (passes([] { return global::setting("LathToolAlwaysToTip", "0") == "1"; })) {
    skip_failure([&] { station.ToolReference(reference_tip); });
  }
  if (passes([&] { return station.ToolReference() == reference_spindle; })) clear_shift(tool);
  if (passes([&] { return station.ToolReference() == reference_tip; })) {
    skip_failure([&] { ApplyToolShift(tool); });
  }
}

void update_on_mill(const host::Tool& tool) {
  const host::Station station = station_on_mill(tool);
  if (passes([&] { return station.ToolReference() == reference_tip; })) {
    skip_failure([&] { ApplyToolShift(tool); });
  }
}

}  // namespace

void UpdateToolOrientation(const host::Tool& tool, MachineView& machine) {
  if (!orientation_changed(tool)) return;
  if (is_of(machine, host::machine_with_turrets)) update_on_turret(tool, machine);
  if (is_of(machine, host::mill_machine)) update_on_mill(tool);
}

}  // namespace shapes
