#pragma once

#include <string>
#include <string_view>

namespace platform::posix {

/// One text for all names that `same_name` takes for the same.
std::string folded_name(std::string_view utf8);

}  // namespace platform::posix
