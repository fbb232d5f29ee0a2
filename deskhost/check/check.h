#pragma once

#include <string>
#include <vector>

#include "deskhost/console/command_line.h"

namespace deskhost::check {

/// Tries to break a component: `args` are those behind "check". A line for each level, findings with the
/// command that repeats them. The exit status: 0 nothing found, 1 something, 2 wrong use, 3 the component
/// can't be loaded.
int run_check(const std::vector<std::string>& args, const Surroundings& surroundings);

}  // namespace deskhost::check
