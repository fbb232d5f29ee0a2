#pragma once

#include <filesystem>

namespace deskhost {

/// Whether the file is there and its rights forbid to write it, be it to this user or to everybody: a
/// superuser, who may write everything, is told of a file that nobody is meant to write too.
bool is_write_protected(const std::filesystem::path& file);

}  // namespace deskhost
