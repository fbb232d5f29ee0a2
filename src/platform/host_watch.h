#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a program that loads components hears of what they do by way of the system. On posix a component
/// finds the watch of its program; on Windows it hears of nothing but the message boxes that the program
/// itself closes.
namespace platform {

/// How the start of a program came out.
struct ProgramRun {
  std::string command_line;
  /// The names under which the program was looked for, as they stand in the command line.
  std::vector<std::string> attempts;
  std::string program;  ///< its file; empty where none was found
  std::string failure;  ///< why it couldn't be started; empty where it ran
  int status = 0;
  int signal = 0;  ///< the one that ended it; 0 for none
  bool timed_out = false;

  [[nodiscard]] bool went_well() const noexcept { return failure.empty() && status == 0 && signal == 0; }
};

struct Watch {
  /// A message box is about to be shown.
  std::function<void()> message_box;
  /// A program runs as that process; 0 when it has ended.
  std::function<void(long process)> program_runs;
  /// A line that a program wrote, without its end; where this is empty a program writes where this one does.
  std::function<void(std::string_view program, std::string_view line)> program_wrote;
  std::function<void(const ProgramRun&)> program_ended;
  /// A file could not be read, written or deleted.
  std::function<void(std::string_view file, std::string_view why)> file_failed;
  /// A program that runs longer is ended; 0 for no limit.
  std::chrono::milliseconds time_limit{0};
};

/// From here on `watch` hears of this program and of the components in it; nothing for no watch.
void set_watch(std::optional<Watch> watch);

/// The one that was set here, in this program or this component, or null.
const Watch* own_watch();

/// The watch that is to be told, or null.
const Watch* watch();

}  // namespace platform
