#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace platform::posix {

/// A command line, taken apart as Windows and its programs do.
struct Command {
  /// Native path; empty where there is no such program.
  std::string program;
  /// Split at blanks outside quotes: a path with a blank that isn't quoted is two arguments, there as here.
  std::vector<std::string> arguments;
  /// The names under which the program was looked for, in order.
  std::vector<std::string> attempts;
};

/// The program's name ends at a quote or, without quotes, at the first blank behind which a file of that name
/// is found, with or without ".exe".
Command read_command_line(std::string_view line);

}  // namespace platform::posix
