#include <windows.h>

#include "platform/environment.h"
#include "platform/text.h"
#include "platform/win32/text_win32.h"

namespace platform {

std::string environment(std::string_view name) {
  const std::wstring variable = win32::wide(name);
  std::wstring value(GetEnvironmentVariableW(variable.c_str(), nullptr, 0), L'\0');
  value.resize(GetEnvironmentVariableW(variable.c_str(), value.data(), static_cast<DWORD>(value.size())));
  // what the code page lacks is lost on the way through it
  return from_code_page(to_code_page(win32::utf8(value)));
}

}  // namespace platform
