#pragma once

#include <mutex>

namespace deskhost {

/// Ends them all, with what they started, for a program that is about to be ended itself; `held` is what
/// hold_leftovers gave.
void end_part_processes(const std::unique_lock<std::mutex>& held) noexcept;

}  // namespace deskhost
