#include <windows.h>

// windows.h has to come first
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <cstdio>
#include <cstdlib>

#include "deskhost/system/file_path.h"
#include "deskhost/system/message_watch_win32.h"
#include "deskhost/system/program.h"

namespace deskhost {
namespace {

/// A console, that is; the system calls every device a terminal.
bool is_terminal(DWORD standard_file) {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(standard_file), &mode) != FALSE;
}

/// Output is UTF-8 with plain line ends, in a console too, which gets its own code page back at the end.
void prepare_output() {
  for (FILE* const file : {stdout, stderr}) _setmode(_fileno(file), _O_BINARY);
  static const UINT code_page_before = GetConsoleOutputCP();
  if (code_page_before == 0) return;
  SetConsoleOutputCP(CP_UTF8);
  std::atexit([] { SetConsoleOutputCP(code_page_before); });
}

}  // namespace

std::vector<std::string> start_program(int /*argc*/, char** /*argv*/) {
  prepare_output();
  if (!is_terminal(STD_INPUT_HANDLE)) close_and_report_messages();
  // the ones that the system hands over in its code page have lost characters
  int count = 0;
  wchar_t** const texts = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(name_of(texts[i]));
  LocalFree(texts);
  return arguments;
}

bool errors_go_to_a_terminal() {
  return is_terminal(STD_ERROR_HANDLE);
}

}  // namespace deskhost
