#pragma once

#include "host/document.h"
#include "import/document_tools.h"
#include "import/tool_record.h"
#include "shapes/machine_view.h"

namespace mQuorvex {

/// Offers every parameter to the tool, in one fixed order; what the host refuses is dropped without a word. A
/// new tool also gets its number, turret, station, length register and orientations.
void WriteToolParameters(const host::ToolParameters& tool, bool is_new, const ToolRecord& record,
                         DocumentTools& tools, shapes::MachineView& machine);

}  // namespace mQuorvex
