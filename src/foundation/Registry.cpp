#include "foundation/Registry.h"

#include "platform/registry.h"
#include "platform/text.h"

namespace Registry {
namespace {

using platform::RegistryKind;

platform::RegistryRoot root_of(std::int16_t hive) {
  return 0x80000000U + static_cast<platform::RegistryRoot>(hive);
}

std::string hex_dump(std::string_view bytes) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text += {digits[byte >> 4], digits[byte & 0xf], ' '};
  }
  return text;
}

std::string number_text(std::string_view bytes) {
  if (bytes.size() > sizeof(std::uint32_t)) return {};
  std::uint32_t number = 0;
  for (std::size_t i = bytes.size(); i-- > 0;) number = number << 8 | static_cast<unsigned char>(bytes[i]);
  return std::to_string(static_cast<std::int32_t>(number));
}

}  // namespace

std::string GetRegistryValue(const std::int16_t& hive, std::string_view key, std::string_view value_name) {
  const auto value = platform::registry_read(root_of(hive), key, value_name);
  if (!value) return {};
  switch (static_cast<RegistryKind>(value->kind)) {
    case RegistryKind::string:
    case RegistryKind::expandable_string:
    case RegistryKind::multi_string:
      return platform::from_code_page(value->data.substr(0, value->data.find('\0')));
    case RegistryKind::binary:
      return hex_dump(value->data);
    case RegistryKind::number:
      return number_text(value->data);
  }
  return {};
}

void SaveRegistryString(const std::int16_t& hive, std::string_view key, std::string_view value_name,
                        std::string_view text) {
  CreateRegistryKeyPath(hive, key);
  SetRegistryValue(hive, key, value_name, static_cast<std::uint32_t>(RegistryKind::string),
                   platform::to_code_page(text));
}

void CreateRegistryKeyPath(const std::int16_t& hive, std::string_view key) {
  std::string rest(key);
  std::string done;
  while (rest.find('\\') != std::string::npos) {
    const std::string level = NextToken(rest, "\\");
    CreateRegistrySubKey(hive, done, level);
    done += (done.empty() ? "" : "\\") + level;
  }
  CreateRegistrySubKey(hive, done, rest);
}

void CreateRegistrySubKey(const std::int16_t& hive, std::string_view parent, std::string_view name) {
  platform::registry_create_sub_key(root_of(hive), parent, name);
}

void SetRegistryValue(const std::int16_t& hive, std::string_view key, std::string_view value_name,
                      std::uint32_t kind, std::string_view data) {
  platform::registry_write(root_of(hive), key, value_name, {kind, std::string(data)});
}

std::string NextToken(std::string& text, std::string_view delimiter) {
  const std::size_t end = text.find(delimiter);
  std::string token = text.substr(0, end);
  text = end == std::string::npos ? std::string() : text.substr(end + delimiter.size());
  return token;
}

}  // namespace Registry
