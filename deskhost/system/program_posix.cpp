#include <fcntl.h>
#include <unistd.h>

#include <csignal>

#include "deskhost/system/program.h"

namespace deskhost {
namespace {

/// A descriptor that came closed would go to the first file that is opened, and messages into that file.
void open_standard_files() {
  for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(number, F_GETFD) < 0 && open("/dev/null", O_RDWR) < 0) _exit(2);
  }
}

}  // namespace

std::vector<std::string> start_program(int argc, char** argv) {
  open_standard_files();
  // A reader that goes and a file that gets too long fail the write, not the session.
  for (const int number : {SIGPIPE, SIGXFSZ}) std::signal(number, SIG_IGN);
  return {argv + 1, argv + argc};
}

bool errors_go_to_a_terminal() {
  return isatty(STDERR_FILENO) != 0;
}

}  // namespace deskhost
