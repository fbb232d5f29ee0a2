#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string>
#include <vector>

#include "automation/failure.h"
#include "platform/files.h"
#include "platform/posix/path_posix.h"
#include "platform/process.h"
#include "platform/text.h"

namespace platform {
namespace {

using automation::Error;
using automation::Failure;

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

struct Command {
  std::string program;  // native path
  std::string_view arguments;
};

Command find_command(std::string_view line) {
  line = trimmed(line);
  if (line.starts_with('"')) {
    line.remove_prefix(1);
    const std::size_t end = std::min(line.find('"'), line.size());
    return {find_program(line.substr(0, end)), trimmed(line.substr(std::min(end + 1, line.size())))};
  }
  for (std::size_t end = line.find(' '); !line.empty(); end = line.find(' ', end + 1)) {
    const std::string program = find_program(line.substr(0, end));
    if (!program.empty()) return {program, end == std::string_view::npos ? "" : trimmed(line.substr(end))};
    if (end == std::string_view::npos) break;
  }
  return {};
}

// A path of the add-in means nothing to a program of this system.
std::string argument(const std::string& text) {
  const bool drive =
      text.size() >= 2 && text[1] == ':' && std::isalpha(static_cast<unsigned char>(text[0])) != 0;
  return drive || text.find('\\') != std::string::npos ? native_path(text) : text;
}

// Without quotes everything is one argument: the path behind the program's name may hold blanks, and on the
// other system the program takes its command line as a whole.
std::vector<std::string> split_arguments(std::string_view text) {
  if (text.empty()) return {};
  if (text.find('"') == std::string_view::npos) return {argument(std::string(text))};
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

// How the program starts: with none of this process's files but the standard three, and without what the host
// may have set for its own signals.
class StartSettings {
 public:
  StartSettings() {
    posix_spawnattr_init(&attributes_);
    posix_spawn_file_actions_init(&files_);
    constexpr int first_own_file = 3;
    posix_spawn_file_actions_addclosefrom_np(&files_, first_own_file);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes_, &signals);
    for (const int number : {SIGCHLD, SIGPIPE, SIGXFSZ, SIGINT, SIGTERM}) sigaddset(&signals, number);
    posix_spawnattr_setsigdefault(&attributes_, &signals);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
  }
  ~StartSettings() {
    posix_spawn_file_actions_destroy(&files_);
    posix_spawnattr_destroy(&attributes_);
  }
  StartSettings(const StartSettings&) = delete;
  StartSettings& operator=(const StartSettings&) = delete;

  // The result of posix_spawn, which also tells what keeps the program from running.
  int start(pid_t& process, const std::string& program, char* const* arguments) const {
    return posix_spawn(&process, program.c_str(), &files_, &attributes_, arguments, environ);
  }

 private:
  posix_spawnattr_t attributes_{};
  posix_spawn_file_actions_t files_{};
};

Failure cannot_start(int code) {
  switch (code) {
    case ENOENT:
    case ENOTDIR:
      return Failure(Error::file_not_found);
    case EACCES:
    case EPERM:
    case ETXTBSY:
      return Failure(Error::permission_denied);
    default:
      return Failure(Error::invalid_argument);  // a file that isn't a program
  }
}

}  // namespace

void shell_and_wait(std::string_view command_line, std::int32_t /*window_style*/) {
  Command command = find_command(command_line);
  if (command.program.empty()) throw Failure(Error::file_not_found);
  std::vector<std::string> arguments = split_arguments(command.arguments);
  std::vector<char*> texts{command.program.data()};
  for (std::string& text : arguments) texts.push_back(text.data());
  texts.push_back(nullptr);

  pid_t process = 0;
  const int code = StartSettings().start(process, command.program, texts.data());
  if (code != 0) throw cannot_start(code);
  // a host that ignores SIGCHLD, or collects ended processes itself, leaves nothing to wait for at the end
  while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
  }
}

}  // namespace platform
