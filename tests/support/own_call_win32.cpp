#include <windows.h>

#include "support/own_call.h"

namespace testing_support {

OwnCall own_call(int /*argc*/, char** /*argv*/) {
  wchar_t program[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  std::string line = GetCommandLineA();
  const std::string stem = std::filesystem::path(program).stem().string();
  // without quotes the program's name, which may have blanks in it, ends with its file's
  const bool quoted = line.starts_with('"');
  std::size_t end = quoted ? line.find('"', 1) : std::string::npos;
  for (std::size_t at = 0; !quoted && at + stem.size() <= line.size(); ++at) {
    if (_strnicmp(line.c_str() + at, stem.c_str(), stem.size()) != 0) continue;
    end = line.find(' ', at + stem.size());
    break;
  }
  line.erase(0, end == std::string::npos ? line.size() : end + 1);
  const std::size_t first = line.find_first_not_of(' ');
  if (first == std::string::npos) return {program, {}};
  return {program, {line.substr(first, line.find_last_not_of(' ') - first + 1)}};
}

}  // namespace testing_support
