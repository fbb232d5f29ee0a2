#pragma once

#include <string>

#include "deskhost/inspect/report.h"

namespace deskhost::inspect {

/// The report as one page of HTML, without scripts or anything from outside, to be read and printed.
std::string html_of(const Report& report);

}  // namespace deskhost::inspect
