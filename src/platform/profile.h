#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// The system's profile functions under their contracts, lengths in bytes of the code page. A path that
/// names no file that can be read is a file without entries.
namespace platform {

/// GetPrivateProfileStringA with a buffer of `size` bytes: the value without the blanks and the one pair of
/// quotes around it, at most size - 1 bytes of it; the default (without its trailing blanks) where file,
/// section or key is missing. Names match regardless of case; the first of two equal names wins.
std::string private_profile_string(std::string_view section, std::string_view key,
                                   std::string_view default_text, std::size_t size, std::string_view path);

}  // namespace platform
