#pragma once

#include "host/machine.h"
#include "host/tool.h"
#include "shapes/machine_view.h"

namespace shapes {

/// Station.ToolReference: what a tool's shift means on the station.
inline constexpr std::int32_t reference_tip = 0;
inline constexpr std::int32_t reference_spindle = 2;

/// The station that the tool stands on, in the active document. A number outside the collection falls back
/// to its first entry. Skip failures: a view of nothing where the station can't be had.
host::Station station_on_turret(const host::Tool& tool, MachineView& machine);
host::Station station_on_mill(const host::Tool& tool);

}  // namespace shapes
