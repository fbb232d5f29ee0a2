#pragma once

#include <cstdint>
#include <string_view>

namespace platform {

/// Starts the command line and waits until the program has ended, without a time limit; exit status and
/// signals aren't looked at. The program's name ends at a quote or, without quotes, at the first blank behind
/// which a file of that name is found, so a folder with blanks works; the rest is its arguments.
/// `window_style` is the system's (1: normal, with the focus); posix ignores it. Throws Failure where nothing
/// could be started.
void shell_and_wait(std::string_view command_line, std::int32_t window_style);

}  // namespace platform
