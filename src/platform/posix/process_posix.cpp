#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <string>
#include <utility>
#include <vector>

#include "automation/failure.h"
#include "platform/host_watch.h"
#include "platform/posix/command_line_posix.h"
#include "platform/process.h"

namespace platform {
namespace {

using automation::Error;
using automation::Failure;

// How the program starts: with none of this process's files but the standard three, and without what the host
// may have set for its own signals.
class StartSettings {
 public:
  /// `output` takes the place of standard output and error, unless it is negative. A program with a time
  /// limit is the first of a group, so that it can be ended with those that it started.
  StartSettings(int output, bool own_group) {
    posix_spawnattr_init(&attributes_);
    posix_spawn_file_actions_init(&files_);
    for (const int number : {STDOUT_FILENO, STDERR_FILENO}) {
      if (output >= 0) posix_spawn_file_actions_adddup2(&files_, output, number);
    }
    constexpr int first_own_file = 3;
    posix_spawn_file_actions_addclosefrom_np(&files_, first_own_file);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes_, &signals);
    for (const int number : {SIGCHLD, SIGPIPE, SIGXFSZ, SIGINT, SIGTERM}) sigaddset(&signals, number);
    posix_spawnattr_setsigdefault(&attributes_, &signals);
    const int group = own_group ? POSIX_SPAWN_SETPGROUP : 0;
    posix_spawnattr_setflags(&attributes_,
                             static_cast<short>(POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK | group));
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

/// What a program writes, taken in while it runs and told line by line.
class Output {
 public:
  explicit Output(const Watch* told) : told_(told) {
    int ends[2] = {-1, -1};
    if (told_ == nullptr || !told_->program_wrote || pipe2(ends, O_CLOEXEC) != 0) return;
    reading_ = ends[0];
    writing_ = ends[1];
    fcntl(reading_, F_SETFL, O_NONBLOCK);
  }
  ~Output() {
    started();
    close(reading_);
  }
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  [[nodiscard]] int writing_end() const { return writing_; }
  /// The program has the writing end now, and this one isn't needed.
  void started() { close(std::exchange(writing_, -1)); }

  /// Waits for something to take in, at most `milliseconds`.
  void wait(int milliseconds) {
    pollfd file{reading_, POLLIN, 0};
    poll(&file, reading_ >= 0 ? 1 : 0, milliseconds);
  }
  void take_in(const std::string& program) {
    char buffer[4096];
    ssize_t size = 0;
    while (reading_ >= 0 && (size = read(reading_, buffer, sizeof buffer)) > 0) {
      text_.append(buffer, static_cast<std::size_t>(size));
    }
    if (reading_ >= 0 && size == 0) close(std::exchange(reading_, -1));
    for (std::size_t end = 0; (end = text_.find('\n')) != std::string::npos; text_.erase(0, end + 1)) {
      told_->program_wrote(program, std::string_view(text_).substr(0, end));
    }
  }
  void finish(const std::string& program) {
    take_in(program);
    if (!text_.empty()) told_->program_wrote(program, text_);
  }

 private:
  static void close(int number) {
    if (number >= 0) ::close(number);
  }

  const Watch* told_;
  int reading_ = -1, writing_ = -1;
  std::string text_;
};

using Clock = std::chrono::steady_clock;

/// Ends a program's group: first it is asked to, then it isn't.
void end_group(pid_t process, Clock::duration beyond) {
  kill(-process, beyond < std::chrono::seconds(2) ? SIGTERM : SIGKILL);
}

/// The status that the process ended with; what it writes is taken in meanwhile.
int wait_for(pid_t process, Output& output, std::chrono::milliseconds limit, ProgramRun& run) {
  constexpr int longest_step = 50;
  int step = 1;  // milliseconds
  const Clock::time_point start = Clock::now();
  for (int status = 0;;) {
    const pid_t ended = waitpid(process, &status, WNOHANG);
    // a host that ignores SIGCHLD, or collects ended processes itself, leaves nothing to wait for at the end
    if (ended > 0 || (ended < 0 && errno == ECHILD)) return status;
    const Clock::duration beyond = Clock::now() - start - limit;
    run.timed_out = limit.count() > 0 && beyond > Clock::duration::zero();
    if (run.timed_out) end_group(process, beyond);
    output.wait(step);
    step = std::min(2 * step, longest_step);
    output.take_in(run.program);
  }
}

void run_watched(posix::Command& command, char* const* arguments, const Watch& told, ProgramRun& run) {
  Output output(&told);
  pid_t process = 0;
  const StartSettings settings(output.writing_end(), told.time_limit.count() > 0);
  const int code = settings.start(process, command.program, arguments);
  if (code != 0) throw cannot_start(code);
  output.started();
  if (told.program_runs) told.program_runs(process);
  const int status = wait_for(process, output, told.time_limit, run);
  if (told.program_runs) told.program_runs(0);
  output.finish(run.program);
  if (WIFEXITED(status)) run.status = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) run.signal = WTERMSIG(status);
}

void run_unwatched(const posix::Command& command, char* const* arguments) {
  pid_t process = 0;
  const int code = StartSettings(-1, false).start(process, command.program, arguments);
  if (code != 0) throw cannot_start(code);
  while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
  }
}

}  // namespace

void shell_and_wait(std::string_view command_line, std::int32_t /*window_style*/) {
  const Watch* const told = watch();
  posix::Command command = posix::read_command_line(command_line);
  ProgramRun run{std::string(command_line), command.attempts, command.program, {}, 0, 0, false};
  std::vector<char*> texts{command.program.data()};
  for (std::string& text : command.arguments) texts.push_back(text.data());
  texts.push_back(nullptr);
  try {
    if (command.program.empty()) throw Failure(Error::file_not_found);
    if (told == nullptr) return run_unwatched(command, texts.data());
    run_watched(command, texts.data(), *told, run);
  } catch (const Failure& failure) {
    run.failure = failure.what();
    if (told != nullptr && told->program_ended) told->program_ended(run);
    throw;
  }
  if (told->program_ended) told->program_ended(run);
}

}  // namespace platform
