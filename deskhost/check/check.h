#pragma once

#include "deskhost/console/command_line.h"

namespace deskhost::check {

/// "check" tries to break a component: a line for each level, findings with the command that repeats them.
/// The exit status: 0 nothing found, 1 something, 2 wrong use, 3 the component can't be loaded.
SubCommand sub_command();

}  // namespace deskhost::check
