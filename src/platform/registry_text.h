#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/registry.h"

/// The registry's export form: what a file of it holds, and how that is read and written. Texts are UTF-8
/// here.
namespace platform::registry_text {

struct Entry {
  std::string name;  ///< empty for the key's default value
  RegistryValue value;
};

struct Key {
  std::string path;  ///< with the hive's name first
  std::vector<Entry> entries;
};

/// Keys in the order of the file.
using Store = std::vector<Key>;

/// Nothing where `text` isn't an export in whole; one of blank lines alone is an empty one.
std::optional<Store> parse(std::string_view text);

std::string print(const Store& store);

}  // namespace platform::registry_text
