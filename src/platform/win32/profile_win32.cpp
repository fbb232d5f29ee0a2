#include <windows.h>

#include <algorithm>

#include "platform/profile.h"
#include "platform/profile_text.h"
#include "platform/text.h"
#include "platform/win32/path_win32.h"

namespace platform {

std::string private_profile_string(std::string_view section, std::string_view key,
                                   std::string_view default_text, std::size_t size, std::string_view path) {
  std::string buffer(size, '\0');
  buffer.resize(GetPrivateProfileStringA(to_code_page(section).c_str(), to_code_page(key).c_str(),
                                         to_code_page(default_text).c_str(), buffer.data(),
                                         static_cast<DWORD>(size), to_code_page(path).c_str()));
  return from_code_page(buffer);
}

std::int32_t private_profile_int(std::string_view section, std::string_view key, std::int32_t default_number,
                                 std::string_view path) {
  return static_cast<std::int32_t>(GetPrivateProfileIntA(
      to_code_page(section).c_str(), to_code_page(key).c_str(), default_number, to_code_page(path).c_str()));
}

std::string private_profile_section(std::string_view section, std::size_t size, std::string_view path) {
  std::string buffer(size, '\0');
  GetPrivateProfileSectionA(to_code_page(section).c_str(), buffer.data(), static_cast<DWORD>(size),
                            to_code_page(path).c_str());
  // the list's own NUL stands behind that of its last piece; of an empty list and of one that was cut the
  // count doesn't tell
  if (buffer.starts_with('\0')) return {};
  buffer.resize(std::min(buffer.find(std::string_view("\0\0", 2)) + 1, size));
  return from_code_page(buffer);
}

bool write_private_profile_string(std::string_view section, std::string_view key,
                                  std::optional<std::string_view> value, std::string_view path) {
  if (path.empty() || !profile_text::is_entry(section, key, value.value_or(""))) return false;
  const std::string bytes = to_code_page(value.value_or(""));
  return WritePrivateProfileStringA(to_code_page(section).c_str(), to_code_page(key).c_str(),
                                    value ? bytes.c_str() : nullptr, to_code_page(path).c_str()) != FALSE;
}

bool write_private_profile_section(std::string_view section, std::string_view entries,
                                   std::string_view path) {
  if (path.empty() || !profile_text::are_entries(section, entries)) return false;
  return WritePrivateProfileSectionA(to_code_page(section).c_str(), (to_code_page(entries) + '\0').c_str(),
                                     to_code_page(path).c_str()) != FALSE;
}

void flush_private_profile(std::string_view path) {
  WritePrivateProfileStringA(nullptr, nullptr, nullptr, to_code_page(path).c_str());
}

std::string windows_directory() {
  constexpr UINT size = 255;
  std::string buffer(size, '\0');
  buffer.resize(GetWindowsDirectoryA(buffer.data(), size));
  return win32::without_separator(from_code_page(buffer));
}

std::string system_profile() {
  return windows_directory() + "\\win.ini";
}

}  // namespace platform
