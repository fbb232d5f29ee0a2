#pragma once

#include <string>

#include "deskhost/console/command_line.h"

namespace deskhost {

inline constexpr const char* version = DESKHOST_VERSION;

/// The page of the manual, for man(1).
std::string man_page(const Surroundings& surroundings);

/// What bash has to be told to complete actions, options and files.
std::string bash_completion(const Surroundings& surroundings);

}  // namespace deskhost
