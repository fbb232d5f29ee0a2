#pragma once

#include "host/tool.h"
#include "import/tool_record.h"
#include "shapes/machine_view.h"

namespace mQuorvex {

/// What a tool in the document gets after its parameters: the saved shift and its style as custom
/// properties, a shift and a solid that fit its orientation and its model file, its shape, and its place in
/// the knowledge base. `tool` may be a view of nothing; `machine` is the line's. Skips failures.
void FinishImportedTool(host::Tool tool, const ToolRecord& record, shapes::MachineView& machine);

}  // namespace mQuorvex
