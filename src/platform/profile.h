#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The system's profile functions under their contracts, lengths in bytes of the code page. Names match
/// regardless of case; the first of two equal names wins. To a read, a path that names no file that can be
/// read is a file without entries. A write replaces the file as a whole and gives false where that can't be
/// done; what it doesn't touch stays as it is. The functions without "Private" in their names are these, with
/// `system_profile()` as the path.
namespace platform {

/// GetPrivateProfileStringA with a buffer of `size` bytes: the value without the blanks and the one pair of
/// quotes around it, at most size - 1 bytes of it; the default (without its trailing blanks) where file,
/// section or key is missing.
std::string private_profile_string(std::string_view section, std::string_view key,
                                   std::string_view default_text, std::size_t size, std::string_view path);

/// GetPrivateProfileIntA: the number at the start of the value, decimal or behind "0x" ("0o", "0b") of that
/// base, in 32 bits; 0 where there is none ("B42"), the default where the value is missing or empty.
std::int32_t private_profile_int(std::string_view section, std::string_view key, std::int32_t default_number,
                                 std::string_view path);

/// GetPrivateProfileSectionA with a buffer of `size` bytes: every key=value, each ended by a NUL; without the
/// list's own closing NUL. What doesn't fit is cut, and the last piece is ended by a NUL all the same.
std::string private_profile_section(std::string_view section, std::size_t size, std::string_view path);

/// WritePrivateProfileStringA: file, section and key are made as needed; without a value the key is removed,
/// which succeeds also where there is none. Refuses names and values that can't be read back (line ends, NUL,
/// "=" in a key, "]" in a section).
bool write_private_profile_string(std::string_view section, std::string_view key,
                                  std::optional<std::string_view> value, std::string_view path);

/// WritePrivateProfileSectionA: `entries` (each ended by a NUL) take the place of the section's entries.
bool write_private_profile_section(std::string_view section, std::string_view entries, std::string_view path);

/// Forces out what the system may still hold back of earlier writes.
void flush_private_profile(std::string_view path);

/// GetWindowsDirectoryA, without a closing separator; on posix the user's configuration folder of the add-in,
/// empty where the environment names none.
std::string windows_directory();

/// The path of the system-wide profile, in `windows_directory()`; empty where that is.
std::string system_profile();

}  // namespace platform
