#pragma once

#include <sys/types.h>

namespace deskhost {

/// What fork gives. The child is the first of a group of its own, and an interruption ends it as it ends any
/// program; one of the parent ends the child's group, until `forked_program_ended`. Throws
/// automation::Failure.
pid_t fork_program();
/// It was waited for.
void forked_program_ended(pid_t process);

}  // namespace deskhost
