#pragma once

namespace mQuorvexList {

/// Writes the tools of the active document into the tool list file and runs the list maker on it until it has
/// ended. Throws Failure for what isn't skipped; whichever way it ends, the list file is closed, and the list
/// maker isn't started on one that doesn't hold every line that was written to it.
void ExportToolList();

}  // namespace mQuorvexList
