#include "platform/posix/command_line_posix.h"

#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>

#include "platform/files.h"
#include "platform/text.h"

namespace platform::posix {
namespace {

bool is_file(const std::string& native) {
  struct stat status {};
  return stat(native.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
}

// A name without folder in the folders of PATH; empty where it isn't found.
std::string in_search_path(const std::string& name) {
  const char* variable = std::getenv("PATH");
  std::string_view folders = variable != nullptr ? variable : "";
  while (!folders.empty()) {
    const std::size_t end = std::min(folders.find(':'), folders.size());
    const std::string file = std::string(folders.substr(0, end)) + "/" + name;
    if (is_file(file)) return file;
    folders.remove_prefix(std::min(end + 1, folders.size()));
  }
  return {};
}

// The native path of the program of that name, as it is or with ".exe" behind it; empty where there is none.
std::string find_program(std::string_view name) {
  for (const char* extension : {"", ".exe"}) {
    const std::string native = native_path(std::string(name) + extension);
    if (native.empty()) continue;
    // with a slash, so that the system doesn't take a name in the current folder for another
    if (is_file(native)) return native.find('/') == std::string::npos ? "./" + native : native;
    if (native.find('/') != std::string::npos) continue;
    if (const std::string found = in_search_path(native); !found.empty()) return found;
  }
  return {};
}

// A path of the add-in means nothing to a program of this system.
std::string argument(const std::string& text) {
  const bool drive =
      text.size() >= 2 && text[1] == ':' && std::isalpha(static_cast<unsigned char>(text[0])) != 0;
  return drive || text.find('\\') != std::string::npos ? native_path(text) : text;
}

std::vector<std::string> split_arguments(std::string_view text) {
  std::vector<std::string> arguments;
  std::string current;
  bool started = false;
  bool quoted = false;
  for (const char c : text) {
    if (c == ' ' && !quoted) {
      if (started) arguments.push_back(argument(current));
      current.clear();
      started = false;
      continue;
    }
    started = true;
    if (c == '"') {
      quoted = !quoted;
    } else {
      current += c;
    }
  }
  if (started) arguments.push_back(argument(current));
  return arguments;
}

}  // namespace

Command read_command_line(std::string_view line) {
  Command command;
  line = trimmed(line);
  const bool is_quoted = line.starts_with('"');
  if (is_quoted) line.remove_prefix(1);
  for (std::size_t end = 0; end < line.size();) {
    end = std::min(line.find(is_quoted ? '"' : ' ', end), line.size());
    command.attempts.emplace_back(line.substr(0, end));
    command.program = find_program(command.attempts.back());
    if (end < line.size()) ++end;
    if (!command.program.empty()) command.arguments = split_arguments(line.substr(end));
    if (is_quoted || !command.program.empty()) break;
  }
  return command;
}

}  // namespace platform::posix
