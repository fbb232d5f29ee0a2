#include "platform/text.h"

#include <algorithm>

namespace platform {

std::string_view trimmed(std::string_view text, std::string_view blanks) noexcept {
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::size_t character_count(std::string_view utf8) noexcept {
  return static_cast<std::size_t>(std::ranges::count_if(utf8, begins_character));
}

}  // namespace platform
