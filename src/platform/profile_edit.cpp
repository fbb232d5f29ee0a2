// The changes of a profile file's text; see profile_text.h.

#include <algorithm>
#include <utility>

#include "platform/profile_text.h"
#include "platform/text.h"

namespace platform::profile_text {
namespace {

using Kind = Line::Kind;

bool is_one_line(std::string_view text) {
  return text.find_first_of(std::string_view("\0\r\n", 3)) == std::string_view::npos;
}

bool is_section_name(std::string_view name) {
  return is_one_line(name) && name.find(']') == std::string_view::npos;
}

// The key and the value as a line of a file; nothing where it wouldn't read as that entry.
std::optional<std::string> entry_line(std::string_view key, std::string_view value) {
  const std::string bytes = to_code_page(key) + "=" + to_code_page(value);
  std::string_view rest = bytes;
  const Line line = take_line(rest);
  const bool fits = is_one_line(bytes) && line.kind == Kind::entry && !line.name.empty() &&
                    key.find('=') == std::string_view::npos;
  return fits ? std::optional(bytes) : std::nullopt;
}

std::size_t start_of(const Line& line, std::string_view text) {
  return static_cast<std::size_t>(line.whole.data() - text.data());
}

std::string line_end_of(std::string_view text) {
  const Line first = take_line(text);
  return first.end.empty() ? "\r\n" : std::string(first.end);
}

// Adds what follows in a file. Where a CR would take the LF of a blank line for its own, it gets one.
void join(std::string& text, std::string_view rest) {
  if (text.ends_with('\r') && rest.starts_with('\n')) text += '\n';
  text += rest;
}

// Whole lines between what stands before and behind them; the last line before may lack its end.
std::string put_in(std::string_view before, const std::string& lines, std::string_view behind,
                   std::string_view line_end) {
  std::string result(before);
  if (!result.empty() && result.back() != '\r' && result.back() != '\n') result += line_end;
  result += lines;
  join(result, behind);
  return result;
}

// A list's texts as lines; nothing where one of them wouldn't stay in its section.
std::optional<std::string> list_lines(std::string_view list, std::string_view line_end) {
  const std::string bytes = to_code_page(list);
  std::string lines;
  for (std::string_view rest = bytes; !rest.empty() && rest.front() != '\0';) {
    const std::string_view entry = rest.substr(0, rest.find('\0'));
    rest.remove_prefix(std::min(entry.size() + 1, rest.size()));
    std::string_view parsed = entry;
    if (!is_one_line(entry) || take_line(parsed).kind == Kind::header) return std::nullopt;
    lines.append(entry).append(line_end);
  }
  return lines;
}

std::string with_new_section(std::string_view text, std::string_view section, const std::string& lines,
                             std::string_view line_end) {
  std::string header = "[" + to_code_page(section) + "]";
  return put_in(text, header.append(line_end).append(lines), {}, line_end);
}

}  // namespace

bool is_entry(std::string_view section, std::string_view key, std::string_view value) {
  return is_section_name(section) && entry_line(key, value).has_value();
}

bool are_entries(std::string_view section, std::string_view entries) {
  return is_section_name(section) && list_lines(entries, {}).has_value();
}

std::optional<std::string> with_entry(std::string_view text, std::string_view section, std::string_view key,
                                      std::optional<std::string_view> value) {
  const auto new_line = entry_line(key, value.value_or(""));
  if (!is_section_name(section) || !new_line) return std::nullopt;
  const Name wanted_section(section);
  const Name wanted_key(key);
  std::optional<std::size_t> behind_last;
  for (std::string_view rest = text; !rest.empty();) {
    const Line line = take_line(rest);
    if (line.kind == Kind::header) {
      if (behind_last) break;
      if (!wanted_section.is(line.name)) continue;
    } else if (!behind_last || line.kind == Kind::blank || line.kind == Kind::comment) {
      continue;
    } else if (line.kind == Kind::entry && wanted_key.is(line.name)) {
      std::string result(text.substr(0, start_of(line, text)));
      if (value) result.append(line.name).append("=").append(to_code_page(*value)).append(line.end);
      join(result, rest);
      return result;
    }
    behind_last = start_of(line, text) + line.whole.size();
  }
  if (!value) return std::string(text);
  const std::string line_end = line_end_of(text);
  const std::string added = *new_line + line_end;
  return behind_last ? put_in(text.substr(0, *behind_last), added, text.substr(*behind_last), line_end)
                     : with_new_section(text, section, added, line_end);
}

std::optional<std::string> with_entries(std::string_view text, std::string_view section,
                                        std::string_view entries) {
  if (!is_section_name(section)) return std::nullopt;
  const std::string line_end = line_end_of(text);
  const auto lines = list_lines(entries, line_end);
  if (!lines) return std::nullopt;
  const Name wanted(section);
  std::string head;  // up to the place of the entries: behind the header, then where the first one was
  std::string tail;
  bool found = false;
  bool inside = false;
  bool first_entry = true;
  for (std::string_view rest = text; !rest.empty();) {
    const Line line = take_line(rest);
    if (inside && (line.kind == Kind::entry || line.kind == Kind::junk)) {
      if (std::exchange(first_entry, false)) join(head, std::exchange(tail, {}));
      continue;
    }
    join(found ? tail : head, line.whole);
    if (line.kind == Kind::header) {
      inside = !found && wanted.is(line.name);
      found = found || inside;
    }
  }
  if (!found) return lines->empty() ? std::string(text) : with_new_section(text, section, *lines, line_end);
  if (lines->empty()) {
    join(head, tail);
    return head;
  }
  return put_in(head, *lines, tail, line_end);
}

}  // namespace platform::profile_text
