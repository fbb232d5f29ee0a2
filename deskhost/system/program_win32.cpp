#include <windows.h>

// windows.h has to come first
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "automation/failure.h"
#include "deskhost/system/file_path.h"
#include "deskhost/system/leftover.h"
#include "deskhost/system/message_watch_win32.h"
#include "deskhost/system/part_process_win32.h"
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
  for (FILE* const file : {stdin, stdout, stderr}) _setmode(_fileno(file), _O_BINARY);
  std::setvbuf(stderr, nullptr, _IONBF, 0);  // a file too has each message at once
  static const UINT code_page_before = GetConsoleOutputCP();
  if (code_page_before == 0) return;
  SetConsoleOutputCP(CP_UTF8);
  std::atexit([] { SetConsoleOutputCP(code_page_before); });
}

/// On a thread of the system's own; the system ends the program behind it.
BOOL WINAPI interrupted(DWORD /*how*/) {
  const auto held = hold_leftovers();
  end_part_processes(held);
  remove_leftovers(held);
  return FALSE;
}

}  // namespace

std::vector<std::string> start_program(int /*argc*/, char** /*argv*/) {
  prepare_output();
  SetConsoleCtrlHandler(interrupted, TRUE);
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

bool output_has_no_reader() {
  return GetFileType(GetStdHandle(STD_OUTPUT_HANDLE)) == FILE_TYPE_PIPE;  // what else would fail there
}

void set_running_program(long /*process*/) {}

std::filesystem::path own_program() {
  std::wstring name(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
    if (length < name.size()) return name.substr(0, length);
    name.resize(2 * name.size());
  }
}

void be_found_at(const std::filesystem::path& path) {
  be_found_at(own_program(), path);
}

// Not linked: what runs from one name of a file keeps all its names from being removed.
void be_found_at(const std::filesystem::path& file, const std::filesystem::path& path) {
  std::filesystem::copy(file, path, std::filesystem::copy_options::recursive);
}

std::filesystem::path make_temporary_folder(const std::string& name) {
  static int count = 0;
  std::filesystem::path folder;
  try {
    do {
      folder = std::filesystem::temp_directory_path() /
               (name + "-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++count));
    } while (!std::filesystem::create_directory(folder));
  } catch (const std::filesystem::filesystem_error& error) {
    throw automation::Failure("no temporary folder \"" + name_of(folder) +
                              "\" can be made: " + error.code().message());
  }
  return folder;
}

std::filesystem::path make_folder_in_memory(const std::string& name) {
  return make_temporary_folder(name);
}

std::optional<std::string> variable(const char* name) {
  const std::wstring wide = path_of(name).native();
  const DWORD room = GetEnvironmentVariableW(wide.c_str(), nullptr, 0);
  if (room == 0) return std::nullopt;
  std::wstring value(room, L'\0');
  value.resize(GetEnvironmentVariableW(wide.c_str(), value.data(), room));
  return name_of(value);
}

void set_variable(const char* name, const std::optional<std::string>& value) {
  const std::wstring wide = value ? path_of(*value).native() : std::wstring();
  SetEnvironmentVariableW(path_of(name).c_str(), value ? wide.c_str() : nullptr);
}

std::shared_ptr<void> hold_folder(const std::filesystem::path& folder) {
  std::wstring name = std::filesystem::weakly_canonical(folder).native();
  std::ranges::replace(name, L'\\', L'/');  // which a name of the system can't have
  const HANDLE mutex = CreateMutexW(nullptr, FALSE, (L"deskhost " + name).c_str());
  const bool is_held = GetLastError() == ERROR_ALREADY_EXISTS;
  std::shared_ptr<void> held(mutex, CloseHandle);
  return is_held ? nullptr : held;
}

// A console of this system shows colours only where it is told to: it isn't.
bool results_want_colour() {
  return false;
}

}  // namespace deskhost
