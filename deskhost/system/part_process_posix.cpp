#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

#include "automation/failure.h"
#include "deskhost/system/fork_posix.h"
#include "deskhost/system/part_process.h"

namespace deskhost {
namespace {

void say(int pipe, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(pipe, text.data(), text.size());
    if (written <= 0) _exit(3);
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

[[noreturn]] void be_part(const std::function<void(const Say&)>& part, const std::filesystem::path& errors,
                          int pipe) {
  const int error = open(errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0600);
  const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
  dup2(error, STDERR_FILENO);
  dup2(nothing, STDIN_FILENO);
  close(error);
  close(nothing);
  part([pipe](std::string_view text) { say(pipe, text); });
  _exit(0);
}

}  // namespace

struct PartProcess::System {
  pid_t process = 0;
  int pipe = -1;
};

PartProcess::PartProcess(const std::function<void(const Say&)>& part,
                         const std::vector<std::string>& /*arguments*/, const std::filesystem::path& errors)
    : system_(new System) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw automation::Failure("no pipe for a process can be made");
  system_->process = fork_program();
  if (system_->process == 0) be_part(part, errors, ends[1]);
  close(ends[1]);
  system_->pipe = ends[0];
  fcntl(system_->pipe, F_SETFL, O_NONBLOCK);
}

PartProcess::~PartProcess() {
  if (system_->process == 0) return;
  kill();
  static_cast<void>(end());
}

std::optional<std::string> PartProcess::hear() {
  char buffer[4096];
  const ssize_t size = read(system_->pipe, buffer, sizeof buffer);
  if (size > 0) return std::string(buffer, static_cast<std::size_t>(size));
  return size < 0 && (errno == EAGAIN || errno == EINTR) ? std::optional<std::string>("") : std::nullopt;
}

void PartProcess::kill() {
  ::kill(-system_->process, SIGKILL);
}

std::string PartProcess::end() {
  close(system_->pipe);
  int status = 0;
  waitpid(system_->process, &status, 0);
  forked_program_ended(system_->process);
  system_->process = 0;
  if (WIFSIGNALED(status)) return std::string("crashes: ") + strsignal(WTERMSIG(status));
  return "ends the host's process with status " + std::to_string(WEXITSTATUS(status));
}

void PartProcess::wait_for_any(const std::vector<const PartProcess*>& processes,
                               std::chrono::milliseconds time) {
  std::vector<pollfd> pipes;
  for (const PartProcess* process : processes) pipes.push_back({process->system_->pipe, POLLIN, 0});
  poll(pipes.data(), pipes.size(), static_cast<int>(time.count()));
}

}  // namespace deskhost
