#pragma once

#include "host/tool.h"
#include "shapes/machine_view.h"

namespace shapes {

/// Brings the tool's shift in line with its station where the tool's orientation differs from the recorded
/// one. Reads what is recorded and never writes it, so that a second run gives the same shift. Skips
/// failures.
void UpdateToolOrientation(const host::Tool& tool, MachineView& machine);

}  // namespace shapes
