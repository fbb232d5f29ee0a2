#pragma once

#include <string>

#include "deskhost/inspect/report.h"

namespace deskhost::inspect {

/// The report as JSON in UTF-8; its names stand in docs/inspect.md.
std::string json_of(const Report& report);

}  // namespace deskhost::inspect
