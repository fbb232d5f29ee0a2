#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace deskhost {

/// A file's name as a path; names are UTF-8 here on every system.
inline std::filesystem::path path_of(std::string_view utf8) {
  return {std::u8string(utf8.begin(), utf8.end())};
}

inline std::string name_of(const std::filesystem::path& path) {
  const std::u8string name = path.u8string();
  return {name.begin(), name.end()};
}

}  // namespace deskhost
