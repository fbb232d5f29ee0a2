#pragma once

#include <string>

#include "deskhost/console/command_line.h"

namespace deskhost {

inline constexpr const char* version = DESKHOST_VERSION;
/// The commit that was built, empty where that isn't known; the build writes it.
extern const char* const commit;

/// What `--version` shows: the version, the program's width, and the commit it was built from where that is
/// known.
std::string full_version();

/// The page of the manual, for man(1).
std::string man_page(const Surroundings& surroundings);

/// What bash has to be told to complete actions, options and files.
std::string bash_completion(const Surroundings& surroundings);

}  // namespace deskhost
