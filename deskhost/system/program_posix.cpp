#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <semaphore>
#include <set>
#include <system_error>
#include <thread>

#include "automation/failure.h"
#include "deskhost/system/fork_posix.h"
#include "deskhost/system/leftover.h"
#include "deskhost/system/program.h"

namespace deskhost {
namespace {

/// Everything here is guarded by `hold_leftovers`.
struct Programs {
  pid_t started = 0;
  std::set<pid_t> forked;
  sigset_t interruptions{};  // blocked in every thread but the one that takes them
};

Programs& programs() {
  static auto* const kept = new Programs;
  return *kept;
}

/// A descriptor that came closed would go to the first file that is opened, and messages into that file.
void open_standard_files() {
  for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    // results that go nowhere are an error, messages aren't
    const int how = number == STDOUT_FILENO ? O_RDONLY : O_RDWR;
    if (fcntl(number, F_GETFD) < 0 && open("/dev/null", how) < 0) _exit(2);
  }
}

bool has_ended(pid_t process) {
  siginfo_t ended{};
  // it stays to be collected by the one who started it
  return waitid(P_PID, static_cast<id_t>(process), &ended, WEXITED | WNOHANG | WNOWAIT) != 0 ||
         ended.si_pid == process;
}

/// They write into what is removed next, so that they are waited for, and not for long.
void end_programs() {
  using namespace std::chrono_literals;
  const Programs& running = programs();
  if (running.started > 0 && kill(-running.started, SIGTERM) != 0) kill(running.started, SIGTERM);
  for (const pid_t process : running.forked) kill(-process, SIGTERM);
  for (auto waited = 0ms; waited < 1s && !std::ranges::all_of(running.forked, has_ended); waited += 10ms) {
    std::this_thread::sleep_for(10ms);
  }
  for (const pid_t process : running.forked) kill(-process, SIGKILL);
}

[[noreturn]] void end_by_interruption(sigset_t signals, std::binary_semaphore& runs) {
  runs.release();
  int number = 0;
  sigwait(&signals, &number);
  std::signal(number, SIG_DFL);
  pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);  // the next one isn't waited for
  const auto held = hold_leftovers();               // to the end: nothing is begun any more
  end_programs();
  remove_leftovers(held);
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
  programs().interruptions = signals;
  // What the program comes to without its files, an end or a failure, waits for the end by interruption.
  std::atexit([] { const auto held = hold_leftovers(); });
  static const std::terminate_handler fail = std::get_terminate();
  std::set_terminate([] {
    const auto held = hold_leftovers();
    fail();
  });
  // A process that is forked while a thread begins could get that thread's locks for good.
  static std::binary_semaphore runs(0);
  std::thread(end_by_interruption, signals, std::ref(runs)).detach();
  runs.acquire();
}

std::filesystem::path make_folder_in(const std::filesystem::path& place, const std::string& name) {
  std::string made = (place / (name + "-XXXXXX")).string();
  if (mkdtemp(made.data()) != nullptr) return made;
  throw automation::Failure("no temporary folder \"" + made +
                            "\" can be made: " + std::generic_category().message(errno));
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
  const auto held = hold_leftovers();
  programs().started = static_cast<pid_t>(process);
}

pid_t fork_program() {
  const auto held = hold_leftovers();
  const pid_t process = fork();
  if (process < 0)
    throw automation::Failure("no process can be started: " + std::generic_category().message(errno));
  if (process > 0) {
    setpgid(process, process);  // both do it: whoever needs the group first has it
    programs().forked.insert(process);
    return process;
  }
  setpgid(0, 0);
  forget_leftovers(held);
  programs().forked.clear();
  pthread_sigmask(SIG_UNBLOCK, &programs().interruptions, nullptr);
  return 0;
}

void forked_program_ended(pid_t process) {
  const auto held = hold_leftovers();
  programs().forked.erase(process);
}

std::filesystem::path own_program() {
  return std::filesystem::read_symlink("/proc/self/exe");
}

void be_found_at(const std::filesystem::path& path) {
  be_found_at(own_program(), path);
}

void be_found_at(const std::filesystem::path& file, const std::filesystem::path& path) {
  std::filesystem::create_symlink(file, path);
}

std::filesystem::path make_temporary_folder(const std::string& name) {
  std::error_code error;
  const std::filesystem::path place = std::filesystem::temp_directory_path(error);
  if (error) {
    throw automation::Failure("the folder for temporary files \"" + variable("TMPDIR").value_or("/tmp") +
                              "\", which the variable TMPDIR tells, can't be used: " + error.message());
  }
  return make_folder_in(place, name);
}

std::filesystem::path make_folder_in_memory(const std::string& name) {
  constexpr const char* memory = "/dev/shm";
  const bool is_told = std::getenv("TMPDIR") != nullptr;
  return !is_told && access(memory, W_OK | X_OK) == 0 ? make_folder_in(memory, name)
                                                      : make_temporary_folder(name);
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
