#include "platform/profile_text.h"

#include <algorithm>

#include "platform/text.h"

namespace platform::profile_text {
namespace {

constexpr std::string_view blanks = " \t";

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
  std::size_t end = 0;  // a plain loop is many times faster here than find_first_of
  while (end < rest.size() && rest[end] != '\r' && rest[end] != '\n') ++end;
  const std::string_view text = trimmed(rest.substr(0, end), blanks);
  const std::string_view line_end = rest.substr(end, rest.substr(end, 2) == "\r\n" ? 2 : 1);
  const std::string_view whole = rest.substr(0, end + line_end.size());
  rest.remove_prefix(whole.size());
  const auto line = [&](Line::Kind kind, std::string_view name = {}, std::string_view value = {}) {
    return Line{kind, name, value, whole, line_end};
  };

  if (text.empty()) return line(Line::Kind::blank);
  if (text.front() == ';') return line(Line::Kind::comment);
  if (text.front() == '[') {
    const std::size_t close = closing_bracket(text);
    if (close != std::string_view::npos)
      return line(Line::Kind::header, trimmed(text.substr(1, close - 1), blanks));
  }
  const std::size_t sign = text.find('=');
  if (sign == std::string_view::npos) return line(Line::Kind::junk);
  return line(Line::Kind::entry, trimmed(text.substr(0, sign), blanks),
              trimmed(text.substr(sign + 1), blanks));
}

Name::Name(std::string_view wanted) : text_(from_code_page(to_code_page(trimmed(wanted, blanks)))) {}

bool Name::is(std::string_view in_file) const {
  if (is_ascii(in_file)) return in_file.size() == text_.size() && same_name(in_file, text_);
  return same_name(from_code_page(in_file), text_);
}

std::string_view without_quotes(std::string_view value) {
  const bool quoted =
      value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

std::optional<std::string_view> find(std::string_view text, std::string_view section, std::string_view key) {
  const Name wanted_section(section);
  const Name wanted_key(key);
  bool inside = false;
  while (!text.empty()) {
    const Line line = take_line(text);
    if (line.kind == Line::Kind::header) {
      if (inside) break;
      inside = wanted_section.is(line.name);
    } else if (inside && line.kind == Line::Kind::entry && wanted_key.is(line.name)) {
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

namespace {

// The digits at the start of `text`, as far as the base has them; more than 32 bits are cut.
std::uint32_t leading_digits(std::string_view text, std::uint32_t base) {
  std::uint32_t number = 0;
  for (const char c : text) {
    const char small = static_cast<char>(c | 0x20);
    const std::uint32_t digit = c >= '0' && c <= '9'           ? static_cast<std::uint32_t>(c - '0')
                                : small >= 'a' && small <= 'f' ? static_cast<std::uint32_t>(small - 'a' + 10)
                                                               : base;
    if (digit >= base) break;
    number = number * base + digit;
  }
  return number;
}

}  // namespace

std::int32_t int_value(std::string_view text, std::string_view section, std::string_view key,
                       std::int32_t default_number) {
  std::string_view value = without_quotes(find(text, section, key).value_or(""));
  if (value.empty()) return default_number;
  value = trimmed(value, blanks);
  const bool negative = value.starts_with('-');
  if (negative || value.starts_with('+')) value.remove_prefix(1);
  struct Base {
    std::string_view prefix;
    std::uint32_t base;
  };
  std::uint32_t number = 0;
  for (const Base& base : {Base{"0x", 16}, Base{"0o", 8}, Base{"0b", 2}, Base{"", 10}}) {
    if (!value.starts_with(base.prefix)) continue;
    number = leading_digits(value.substr(base.prefix.size()), base.base);
    break;
  }
  return static_cast<std::int32_t>(negative ? 0U - number : number);
}

std::string section_entries(std::string_view text, std::string_view section, std::size_t size) {
  const Name wanted(section);
  std::string list;
  bool inside = false;
  while (!text.empty()) {
    const Line line = take_line(text);
    if (line.kind == Line::Kind::header) {
      if (inside) break;
      inside = wanted.is(line.name);
    } else if (inside && line.kind == Line::Kind::entry) {
      list.append(line.name).append("=").append(line.value) += '\0';
    }
  }
  if (list.size() + 1 > size) {
    list.resize(size > 2 ? size - 2 : 0);
    if (!list.ends_with('\0')) list += '\0';
  }
  return from_code_page(list);
}

}  // namespace platform::profile_text
