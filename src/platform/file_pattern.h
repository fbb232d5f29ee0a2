#pragma once

#include <string_view>

namespace platform {

/// Whether a file's name (UTF-8) is of the pattern, regardless of case: "*" stands for any characters, "?"
/// for one, and "name.*" is also "name".
bool matches_pattern(std::string_view name, std::string_view pattern);

}  // namespace platform
