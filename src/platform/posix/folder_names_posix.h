#pragma once

#include <string>

namespace platform::posix {

/// The name in `folder` (native, with its "/"; empty: the current one) that differs from `name` only in case,
/// of several the first in byte order, so that two runs take the same; empty where there is none.
///
/// What a folder holds is kept for as long as the system tells the same time of its last change, and one that
/// was changed within the last seconds is read again: a change in the same tick of the clock can't be told.
std::string name_in_other_case(const std::string& folder, const std::string& name);

}  // namespace platform::posix
