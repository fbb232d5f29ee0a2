#include "platform/profile_text.h"

#include <algorithm>

#include "platform/text.h"

namespace platform::profile_text {
namespace {

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool is_ascii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// Where the first "]" of a line is. In some code pages the second byte of a character looks like one.
std::size_t closing_bracket(std::string_view line) {
  if (is_ascii(line)) return line.find(']');
  const std::string utf8 = from_code_page(line);
  const std::size_t bracket = utf8.find(']');
  return bracket == std::string::npos ? bracket : to_code_page(utf8.substr(0, bracket)).size();
}

}  // namespace

Line take_line(std::string_view& rest) {
  const std::size_t end = std::min(rest.find_first_of("\r\n"), rest.size());
  const std::string_view text = trimmed(rest.substr(0, end));
  const bool pair = rest.substr(end, 2) == "\r\n";
  rest.remove_prefix(std::min(end + (pair ? 2 : 1), rest.size()));

  if (text.empty() || text.front() == ';') return {};
  if (text.front() == '[') {
    const std::size_t close = closing_bracket(text);
    if (close != std::string_view::npos) return {Line::Kind::header, trimmed(text.substr(1, close - 1)), {}};
  }
  const std::size_t sign = text.find('=');
  if (sign == std::string_view::npos) return {};
  return {Line::Kind::entry, trimmed(text.substr(0, sign)), trimmed(text.substr(sign + 1))};
}

bool names_match(std::string_view in_file, std::string_view wanted) {
  wanted = trimmed(wanted);
  if (is_ascii(in_file)) return in_file.size() == wanted.size() && same_name(in_file, wanted);
  return same_name(from_code_page(in_file), wanted);
}

std::string_view without_quotes(std::string_view value) {
  const bool quoted =
      value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

std::optional<std::string_view> find(std::string_view text, std::string_view section, std::string_view key) {
  bool inside = false;
  while (!text.empty()) {
    const Line line = take_line(text);
    if (line.kind == Line::Kind::header) {
      if (inside) break;
      inside = names_match(line.name, section);
    } else if (inside && line.kind == Line::Kind::entry && names_match(line.name, key)) {
      return line.value;
    }
  }
  return std::nullopt;
}

std::string string_value(std::string_view text, std::string_view section, std::string_view key,
                         std::string_view default_text, std::size_t size) {
  const std::size_t room = size > 0 ? size - 1 : 0;
  if (const auto value = find(text, section, key))
    return from_code_page(without_quotes(*value).substr(0, room));
  const std::string bytes = to_code_page(default_text.substr(0, default_text.find_last_not_of(' ') + 1));
  return from_code_page(std::string_view(bytes).substr(0, room));
}

}  // namespace platform::profile_text
