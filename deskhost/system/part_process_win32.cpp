#include "deskhost/system/part_process_win32.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <set>

#include "automation/failure.h"
#include "deskhost/system/file_path.h"
#include "deskhost/system/leftover.h"
#include "deskhost/system/part_process.h"
#include "deskhost/system/program.h"
#include "platform/win32/path_win32.h"

namespace deskhost {
namespace {

using platform::win32::Handle;

/// Of the processes that run; guarded by `hold_leftovers`.
std::set<HANDLE>& jobs() {
  static auto* const kept = new std::set<HANDLE>;
  return *kept;
}

[[noreturn]] void fail(const char* what) {
  throw automation::Failure(std::string(what) + ": " + platform::win32::failure_of(GetLastError()).what());
}

/// A job whose processes end with it, and with the program that holds it.
HANDLE new_job() {
  const HANDLE job = CreateJobObjectW(nullptr, nullptr);
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  if (job == nullptr ||
      !SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits))
    fail("no job for a process can be made");
  return job;
}

/// Only these three are the new process's too.
struct StandardFiles {
  explicit StandardFiles(const std::filesystem::path& errors_file)
      : nothing(open(L"NUL", GENERIC_READ, OPEN_EXISTING)),
        errors(open(errors_file.c_str(), FILE_APPEND_DATA, CREATE_ALWAYS)) {}

  static HANDLE open(const wchar_t* name, DWORD access, DWORD how) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    return CreateFileW(name, access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, &inherited, how,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
  }

  Handle nothing, errors;
};

/// Quoted so that the program finds the same arguments: a quote gets a backslash, and backslashes count
/// double in front of one.
std::string quoted(const std::string& argument) {
  std::string line = "\"";
  std::size_t backslashes = 0;
  for (const char c : argument) {
    if (c == '"') line.append(backslashes + 1, '\\');
    backslashes = c == '\\' ? backslashes + 1 : 0;
    line += c;
  }
  return line.append(backslashes, '\\') + "\" ";
}

}  // namespace

void end_part_processes(const std::unique_lock<std::mutex>& /*held*/) noexcept {
  for (const HANDLE job : jobs()) TerminateJobObject(job, 1);
  const auto runs = [](HANDLE job) {
    JOBOBJECT_BASIC_ACCOUNTING_INFORMATION counts{};
    QueryInformationJobObject(job, JobObjectBasicAccountingInformation, &counts, sizeof counts, nullptr);
    return counts.ActiveProcesses > 0;
  };
  constexpr int tries = 100;  // for a second: what they hold open can't be removed
  constexpr DWORD pause = 10;
  for (int i = 0; i < tries && std::ranges::any_of(jobs(), runs); ++i) Sleep(pause);
}

struct PartProcess::System {
  HANDLE job = nullptr;
  HANDLE process = nullptr;
  HANDLE pipe = nullptr;
};

PartProcess::PartProcess(const std::function<void(const Say&)>& /*part*/,
                         const std::vector<std::string>& arguments, const std::filesystem::path& errors)
    : system_(new System) {
  // what goes wrong in the new process is for this one to tell, and not for a box on the screen
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
  const StandardFiles files(errors);
  HANDLE writing = nullptr;
  if (!CreatePipe(&system_->pipe, &writing, nullptr, 0)) fail("no pipe for a process can be made");
  const Handle to_say(writing);
  SetHandleInformation(writing, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
  std::string line = quoted(name_of(own_program()));
  for (const std::string& argument : arguments) line += quoted(argument);
  std::wstring command_line = path_of(line).native();
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = files.nothing.get();
  start.hStdOutput = writing;
  start.hStdError = files.errors.get();
  PROCESS_INFORMATION started{};
  const auto held = hold_leftovers();
  system_->job = new_job();
  if (!CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, TRUE,
                      CREATE_SUSPENDED | CREATE_NEW_PROCESS_GROUP, nullptr, nullptr, &start, &started))
    fail("no process can be started");
  const Handle thread(started.hThread);
  system_->process = started.hProcess;
  AssignProcessToJobObject(system_->job, system_->process);
  jobs().insert(system_->job);
  ResumeThread(thread.get());
}

PartProcess::~PartProcess() {
  if (system_->job == nullptr) return;
  kill();
  static_cast<void>(end());
}

std::optional<std::string> PartProcess::hear() {
  DWORD size = 0;
  if (!PeekNamedPipe(system_->pipe, nullptr, 0, nullptr, &size, nullptr)) return std::nullopt;
  std::string text(size, '\0');
  if (size > 0 && !ReadFile(system_->pipe, text.data(), size, &size, nullptr)) return std::nullopt;
  text.resize(size);
  return text;
}

void PartProcess::kill() {
  TerminateJobObject(system_->job, 1);
}

std::string PartProcess::end() {
  DWORD status = 0;
  WaitForSingleObject(system_->process, INFINITE);
  GetExitCodeProcess(system_->process, &status);
  const auto held = hold_leftovers();
  jobs().erase(system_->job);
  for (const HANDLE handle : {system_->job, system_->process, system_->pipe}) CloseHandle(handle);
  *system_ = {};
  constexpr DWORD first_exception = 0xC0000000;
  if (status < first_exception) return "ends the host's process with status " + std::to_string(status);
  char code[16];
  std::snprintf(code, sizeof code, "0x%08lX", status);
  return std::string("crashes: exception ") + code;
}

// Pipes of this kind can't be waited for.
void PartProcess::wait_for_any(const std::vector<const PartProcess*>& processes,
                               std::chrono::milliseconds time) {
  const auto end = std::chrono::steady_clock::now() + time;
  const auto is_due = [](const PartProcess* process) {
    DWORD size = 0;
    return !PeekNamedPipe(process->system_->pipe, nullptr, 0, nullptr, &size, nullptr) || size > 0;
  };
  constexpr DWORD pause = 10;
  while (std::ranges::none_of(processes, is_due) && std::chrono::steady_clock::now() < end) Sleep(pause);
}

}  // namespace deskhost
