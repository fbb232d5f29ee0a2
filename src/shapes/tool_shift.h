#pragma once

#include "host/tool.h"

namespace shapes {

/// Derives the tool's working shift from its saved vector and its present orientation, never from the shift
/// it has, so that any number of turns leads to the right values. Throws Failure at the first step that
/// fails; what was set by then stays.
void ApplyToolShift(const host::Tool& tool);

/// On a mill machine a tool whose station takes its reference at the spindle gets ToolShiftZ from the size of
/// the spindle, less the station's axial offset. Skips failures.
void ApplySpindleGauge(const host::Tool& tool);

}  // namespace shapes
