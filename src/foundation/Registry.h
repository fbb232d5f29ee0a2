#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Named values in the system's registry. A place is a hive (n for the root 0x80000000 + n; 1 is the current
/// user's), a key of levels with "\" between them and none in front, and a value's name. Nothing here fails:
/// a read gives the empty string, a write changes nothing.
namespace Registry {

/// A string up to its first NUL (of several strings the first, an expandable one as it stands), a number in
/// decimal, bytes as upper-case hexadecimal pairs with a blank behind each; empty for other kinds.
std::string GetRegistryValue(const std::int16_t& hive, std::string_view key, std::string_view value_name);

/// Creates the key with every level above it where that is missing, and writes the text into the value.
void SaveRegistryString(const std::int16_t& hive, std::string_view key, std::string_view value_name,
                        std::string_view text);

/// Steps of the two above.
void CreateRegistryKeyPath(const std::int16_t& hive, std::string_view key);
void CreateRegistrySubKey(const std::int16_t& hive, std::string_view parent, std::string_view name);
/// `data` as the registry keeps it, see platform::RegistryValue.
void SetRegistryValue(const std::int16_t& hive, std::string_view key, std::string_view value_name,
                      std::uint32_t kind, std::string_view data);
/// The text before the first delimiter; `text` keeps what is behind it, or nothing.
std::string NextToken(std::string& text, std::string_view delimiter);

}  // namespace Registry
