#pragma once

#include <string>
#include <string_view>

namespace platform {

/// The value of an environment variable as UTF-8 by way of the system's code page; empty where it isn't set.
std::string environment(std::string_view name);

}  // namespace platform
