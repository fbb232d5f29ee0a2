#pragma once

#include "deskhost/console/command_line.h"

namespace deskhost::inspect {

/// "inspect": tells what an import of a tool export file would do to a document. The exit status: 0 nothing
/// worse than a note, or than a warning without --strict; 1 more; 2 wrong use; 3 the component can't be
/// loaded.
SubCommand sub_command();

}  // namespace deskhost::inspect
