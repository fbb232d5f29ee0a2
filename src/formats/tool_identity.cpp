#include "formats/tool_identity.h"

#include <algorithm>

namespace tool_identity {

std::string_view behind_first_hash(std::string_view identity) noexcept {
  const std::size_t hash = identity.find('#');
  return hash == identity.npos ? identity : identity.substr(hash + 1);
}

std::string_view behind_last_hash(std::string_view identity) noexcept {
  const std::size_t hash = identity.rfind('#');
  return hash == identity.npos ? identity : identity.substr(hash + 1);
}

std::optional<std::string_view> second_of_two(std::string_view identity) noexcept {
  if (std::ranges::count(identity, '#') != 1) return std::nullopt;
  return behind_first_hash(identity);
}

std::string model_file(std::string_view identity) {
  return std::string(behind_first_hash(identity)) + ".stl";
}

}  // namespace tool_identity
