#pragma once

namespace mQuorvex {

/// Runs the exporter, reads the tool export file and builds or updates one tool of the active document for
/// each data line. Faults of the exporter and of the file are told to the user; throws Failure where a tool
/// can't be found or made. `global::ToolImportRunning()` is down on every way out.
void ImportTools();

}  // namespace mQuorvex
