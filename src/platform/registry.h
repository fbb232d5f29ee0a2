#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The system's registry. On posix a text file in the registry's own export form (REGEDIT4) at
/// QVESPRIT_REGISTRY, or in the user's configuration folder; it is replaced as a whole, never half written. A
/// file there that isn't such a text has no keys, and is never written to.
namespace platform {

/// 0x80000000 + n: n = 1 is the hive of the current user.
using RegistryRoot = std::uint32_t;

enum class RegistryKind : std::uint32_t {
  string = 1,
  expandable_string = 2,
  binary = 3,
  number = 4,
  multi_string = 7,
};

/// `data` holds the bytes as the registry keeps them: texts in the code page with their NULs, numbers as four
/// bytes, low first.
struct RegistryValue {
  std::uint32_t kind = 0;
  std::string data;
};

/// Nothing where the key can't be opened or has no such value. Never fails.
std::optional<RegistryValue> registry_read(RegistryRoot root, std::string_view key, std::string_view name);

/// Creates the sub key `name` under the key `parent` (empty: the root itself); an existing one is left alone.
/// False where the parent can't be opened or the sub key can't be made.
bool registry_create_sub_key(RegistryRoot root, std::string_view parent, std::string_view name);

/// Writes a value; false where the key can't be opened or the value can't be written.
bool registry_write(RegistryRoot root, std::string_view key, std::string_view name,
                    const RegistryValue& value);

}  // namespace platform
