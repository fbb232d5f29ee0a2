#include "platform/file_pattern.h"

#include <string>

#include "platform/text.h"

namespace platform {
namespace {

std::size_t one_character(std::string_view utf8) {
  std::size_t length = 1;
  while (length < utf8.size() && !begins_character(utf8[length])) ++length;
  return length;
}

// Whether the name is of the pattern, both in the same case.
bool name_matches(std::string_view name, std::string_view pattern) {
  std::string_view behind_star;  // where to go on when what follows the last "*" doesn't fit
  std::string_view taken_from;
  bool starred = false;
  while (!name.empty()) {
    if (pattern.starts_with('*')) {
      pattern.remove_prefix(1);
      behind_star = pattern;
      taken_from = name;
      starred = true;
    } else if (pattern.starts_with('?')) {
      pattern.remove_prefix(1);
      name.remove_prefix(one_character(name));
    } else if (!pattern.empty() && pattern.front() == name.front()) {
      pattern.remove_prefix(1);
      name.remove_prefix(1);
    } else if (starred) {
      taken_from.remove_prefix(one_character(taken_from));
      name = taken_from;
      pattern = behind_star;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*') == std::string_view::npos;
}

}  // namespace

bool matches_pattern(std::string_view name, std::string_view pattern) {
  const std::string wanted = upper_case(pattern);
  const std::string given = upper_case(name);
  return name_matches(given, wanted) || (wanted.ends_with(".*") && name_matches(given + ".", wanted));
}

}  // namespace platform
