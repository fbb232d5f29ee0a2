#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <thread>

#include "deskhost/system/leftover.h"
#include "deskhost/system/program.h"

namespace deskhost {
namespace {

std::atomic<long> running_program = 0;

/// A descriptor that came closed would go to the first file that is opened, and messages into that file.
void open_standard_files() {
  for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(number, F_GETFD) < 0 && open("/dev/null", O_RDWR) < 0) _exit(2);
  }
}

[[noreturn]] void end_by_interruption(sigset_t signals) {
  int number = 0;
  sigwait(&signals, &number);
  std::signal(number, SIG_DFL);
  pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);  // the next one isn't waited for
  if (const auto process = static_cast<pid_t>(running_program.load()); process > 0) {
    if (kill(-process, SIGTERM) != 0) kill(process, SIGTERM);
  }
  remove_leftovers();
  std::raise(number);
  _exit(128 + number);
}

/// A thread of their own takes the interruptions, since a handler could do next to nothing.
void watch_for_interruptions() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction now {};
    sigaction(number, nullptr, &now);
    if (now.sa_handler != SIG_IGN) sigaddset(&signals, number);  // as behind nohup
  }
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  std::thread(end_by_interruption, signals).detach();
}

}  // namespace

std::vector<std::string> start_program(int argc, char** argv) {
  open_standard_files();
  // A reader that goes and a file that gets too long fail the write, not the session.
  for (const int number : {SIGPIPE, SIGXFSZ}) std::signal(number, SIG_IGN);
  watch_for_interruptions();
  return {argv + 1, argv + argc};
}

bool errors_go_to_a_terminal() {
  return isatty(STDERR_FILENO) != 0;
}

bool output_has_no_reader() {
  pollfd output{STDOUT_FILENO, POLLOUT, 0};
  return poll(&output, 1, 0) > 0 && (output.revents & POLLERR) != 0;
}

void set_running_program(long process) {
  running_program = process;
}

std::filesystem::path own_program() {
  return std::filesystem::read_symlink("/proc/self/exe");
}

void be_found_at(const std::filesystem::path& path) {
  std::filesystem::create_symlink(own_program(), path);
}

std::filesystem::path make_temporary_folder() {
  std::string name = (std::filesystem::temp_directory_path() / "deskhost-XXXXXX").string();
  if (mkdtemp(name.data()) != nullptr) return name;
  throw std::filesystem::filesystem_error("no folder can be made", name,
                                          std::error_code(errno, std::generic_category()));
}

std::optional<std::string> variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

void set_variable(const char* name, const std::optional<std::string>& value) {
  if (value) {
    setenv(name, value->c_str(), 1);
  } else {
    unsetenv(name);
  }
}

std::shared_ptr<void> hold_folder(const std::filesystem::path& folder) {
  // A lock on the folder itself leaves nothing in it, and goes with the process in any case.
  const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor >= 0 && flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
    close(descriptor);
    return nullptr;
  }
  return {new int(descriptor), [](void* held) {
            const std::unique_ptr<int> number(static_cast<int*>(held));
            if (*number >= 0) close(*number);
          }};
}

bool results_want_colour() {
  const char* const without = std::getenv("NO_COLOR");
  return isatty(STDOUT_FILENO) != 0 && (without == nullptr || *without == '\0');
}

}  // namespace deskhost
