#pragma once

#include <string>
#include <string_view>

#include "automation/failure.h"

/// What the posix sources share about paths and failing calls. Paths are native here: "/", UTF-8.
namespace platform::posix {

/// A native path as the add-in has it: "\" for "/".
std::string addin_form(std::string_view native);

/// The folder that a path lies in; "." where it names none.
std::string folder_of(const std::string& native);

/// Makes a folder and the ones above it; false where that fails.
bool make_folders(const std::string& native);

/// What a user is told when a call on the path has failed with `code` (an errno).
automation::Failure failure_of(int code, const std::string& native);

/// The folder of the user's settings: that of QVESPRIT_REGISTRY, or else QVEsprit in the user's configuration
/// folder; empty where the environment names none.
std::string settings_folder();

/// The registry's file, in `settings_folder()`; empty where that is.
std::string registry_file();

}  // namespace platform::posix
