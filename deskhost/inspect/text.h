#pragma once

#include <iosfwd>

#include "deskhost/inspect/report.h"

namespace deskhost::inspect {

/// Prints the report for a reader at 100 columns: findings, changes, and a summary of three lines. Long lists
/// are folded, with a count of what isn't shown.
void write_text(const Report& report, bool in_colour, std::ostream& out);

}  // namespace deskhost::inspect
