#include "platform/registry_text.h"

#include <algorithm>
#include <charconv>

#include "platform/text.h"

namespace platform::registry_text {
namespace {

constexpr std::string_view signature = "REGEDIT4";
constexpr auto string_kind = static_cast<std::uint32_t>(RegistryKind::string);
constexpr auto binary_kind = static_cast<std::uint32_t>(RegistryKind::binary);
constexpr auto number_kind = static_cast<std::uint32_t>(RegistryKind::number);
constexpr std::size_t number_size = 4;

constexpr std::string_view blanks = " \t\r";

std::string_view take_line(std::string_view& rest) {
  const std::size_t end = std::min(rest.find('\n'), rest.size());
  const std::string_view line = trimmed(rest.substr(0, end), blanks);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return line;
}

bool take(std::string_view& text, std::string_view expected) {
  if (!text.starts_with(expected)) return false;
  text.remove_prefix(expected.size());
  return true;
}

// A number in hexadecimal digits that `text` consists of in whole.
std::optional<std::uint32_t> hex_number(std::string_view text) {
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, 16);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

// A text in quotes at the start of `text`, which loses it.
std::optional<std::string> take_quoted(std::string_view& text) {
  if (!take(text, "\"")) return std::nullopt;
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '"') {
      text.remove_prefix(i + 1);
      return result;
    }
    if (text[i] == '\\' && ++i == text.size()) break;
    result += text[i];
  }
  return std::nullopt;
}

std::optional<std::string> hex_bytes(std::string_view list) {
  std::string bytes;
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(','), list.size());
    const auto byte = hex_number(trimmed(list.substr(0, end), blanks));
    if (!byte || *byte > 0xff) return std::nullopt;
    bytes += static_cast<char>(*byte);
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return bytes;
}

std::string number_bytes(std::uint32_t number) {
  std::string bytes;
  for (std::size_t i = 0; i < number_size; ++i) bytes += static_cast<char>(number >> (8 * i));
  return bytes;
}

std::optional<RegistryValue> parse_value(std::string_view text) {
  if (text.starts_with('"')) {
    const auto content = take_quoted(text);
    if (!content || !text.empty()) return std::nullopt;
    return RegistryValue{string_kind, to_code_page(*content) + '\0'};
  }
  if (take(text, "dword:")) {
    const auto number = hex_number(text);
    if (!number) return std::nullopt;
    return RegistryValue{number_kind, number_bytes(*number)};
  }
  if (!take(text, "hex")) return std::nullopt;
  std::optional<std::uint32_t> kind = binary_kind;
  if (take(text, "(")) {
    const std::size_t close = std::min(text.find(')'), text.size());
    kind = hex_number(text.substr(0, close));
    text.remove_prefix(std::min(close + 1, text.size()));
  }
  if (!kind || !take(text, ":")) return std::nullopt;
  const auto bytes = hex_bytes(text);
  if (!bytes) return std::nullopt;
  return RegistryValue{*kind, *bytes};
}

std::optional<Entry> parse_entry(std::string_view line) {
  Entry entry;
  if (!take(line, "@")) {
    const auto name = take_quoted(line);
    if (!name) return std::nullopt;
    entry.name = *name;
  }
  if (!take(line, "=")) return std::nullopt;
  const auto value = parse_value(line);
  if (!value) return std::nullopt;
  entry.value = *value;
  return entry;
}

// Whether the text stands for these bytes: nothing is lost on the way to a text and back, and it fits a line.
bool is_plain_text(std::string_view bytes) {
  return bytes.find_first_of(std::string_view("\0\r\n", 3)) == std::string_view::npos &&
         to_code_page(from_code_page(bytes)) == bytes;
}

std::string quoted(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') result += '\\';
    result += c;
  }
  return result + "\"";
}

void append_hex(std::string& result, unsigned number, std::size_t digits) {
  constexpr std::string_view digit = "0123456789abcdef";
  for (std::size_t i = digits; i-- > 0;) result += digit[(number >> (4 * i)) & 0xf];
}

std::string print_value(const RegistryValue& value) {
  std::string_view data = value.data;
  if (value.kind == string_kind) {
    if (data.ends_with('\0')) data.remove_suffix(1);
    if (is_plain_text(data)) return quoted(from_code_page(data));
    data = value.data;
  }
  std::string result;
  if (value.kind == number_kind && data.size() == number_size) {
    result = "dword:";
    for (std::size_t i = number_size; i-- > 0;) append_hex(result, static_cast<unsigned char>(data[i]), 2);
    return result;
  }
  result = "hex";
  if (value.kind != binary_kind) {
    char digits[8];
    const auto [end, error] = std::to_chars(digits, digits + sizeof digits, value.kind, 16);
    result.append("(").append(digits, end).append(")");
  }
  result += ':';
  for (std::size_t i = 0; i < data.size(); ++i) {
    constexpr std::size_t bytes_a_line = 24;
    if (i > 0) result += i % bytes_a_line == 0 ? ",\\\r\n  " : ",";
    append_hex(result, static_cast<unsigned char>(data[i]), 2);
  }
  return result;
}

}  // namespace

std::optional<Store> parse(std::string_view file) {
  const std::string text = from_code_page(file);
  std::string_view rest = text;
  Store store;
  if (text.find_first_not_of(" \t\r\n") == std::string::npos) return store;
  if (take_line(rest) != signature) return std::nullopt;
  while (!rest.empty()) {
    std::string line(take_line(rest));
    if (line.empty() || line.starts_with(';')) continue;
    if (line.starts_with('[')) {
      if (!line.ends_with(']')) return std::nullopt;
      store.push_back({line.substr(1, line.size() - 2), {}});
      continue;
    }
    const bool is_text = line.ends_with('"');
    while (!is_text && line.ends_with('\\') && !rest.empty()) {
      line.pop_back();
      line += take_line(rest);
    }
    const auto entry = parse_entry(line);
    if (!entry || store.empty()) return std::nullopt;
    store.back().entries.push_back(*entry);
  }
  return store;
}

std::string print(const Store& store) {
  std::string text = std::string(signature) + "\r\n";
  for (const Key& key : store) {
    text += "\r\n[" + key.path + "]\r\n";
    for (const Entry& entry : key.entries) {
      text += (entry.name.empty() ? "@" : quoted(entry.name)) + "=" + print_value(entry.value) + "\r\n";
    }
  }
  return to_code_page(text);
}

}  // namespace platform::registry_text
