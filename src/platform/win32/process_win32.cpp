#include <windows.h>

#include <string>

#include "automation/failure.h"
#include "platform/process.h"
#include "platform/win32/path_win32.h"
#include "platform/win32/text_win32.h"

namespace platform {
namespace {

using automation::Error;
using automation::Failure;
using win32::Handle;

constexpr DWORD elevation_required = 740;  // ERROR_ELEVATION_REQUIRED, which this compiler lacks

Failure cannot_start(DWORD code) {
  switch (code) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_DIRECTORY:
      return Failure(Error::file_not_found);
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case elevation_required:
      return Failure(Error::permission_denied);
    default:
      return Failure(Error::invalid_argument);  // a file that isn't a program
  }
}

}  // namespace

void shell_and_wait(std::string_view command_line, std::int32_t window_style) {
  const std::size_t first = command_line.find_first_not_of(' ');
  if (first == std::string_view::npos) throw Failure(Error::file_not_found);
  std::wstring line = win32::wide(command_line.substr(first));
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESHOWWINDOW;
  start.wShowWindow = static_cast<WORD>(window_style);
  PROCESS_INFORMATION started{};
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &started))
    throw cannot_start(GetLastError());
  // as long as this handle is open, no other process can get the number
  const Handle process(started.hProcess);
  const Handle thread(started.hThread);
  const Handle to_wait_on(OpenProcess(SYNCHRONIZE, FALSE, started.dwProcessId));
  if (to_wait_on) WaitForSingleObject(to_wait_on.get(), INFINITE);
}

}  // namespace platform
