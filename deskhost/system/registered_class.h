#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace deskhost {

/// The file from which the system's component runtime takes a class; nothing where it knows none.
std::optional<std::filesystem::path> registered_file(const std::string& class_name);

/// From here on this process's runtime takes the class from `file`, as if that were registered. Throws
/// automation::Failure.
void register_here(const std::string& class_name, const std::filesystem::path& file);

}  // namespace deskhost
