#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <iostream>
#include <memory>

#include "deskhost/check/check.h"
#include "deskhost/command_line.h"
#include "platform/component_runtime.h"

namespace {

constexpr const char* connect_class = "QVEsprit.Connect";

std::function<automation::Ref()> load(const std::string& file) {
  return [component = std::shared_ptr(platform::load_component(file))] {
    return component->create(connect_class);
  };
}

/// A descriptor that came closed would go to the first file that is opened, and messages into that file.
void open_standard_files() {
  for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(number, F_GETFD) < 0 && open("/dev/null", O_RDWR) < 0) _exit(2);
  }
}

}  // namespace

int main(int argc, char** argv) {
  open_standard_files();
  // A reader that goes and a file that gets too long fail the write, not the session.
  for (const int number : {SIGPIPE, SIGXFSZ}) std::signal(number, SIG_IGN);
  const std::vector<std::string> args(argv + 1, argv + argc);
  const deskhost::Surroundings surroundings{std::cout, std::cerr, load, isatty(STDERR_FILENO) != 0};
  if (!args.empty() && args.front() == "check") {
    const int status = deskhost::check::run_check({args.begin() + 1, args.end()}, surroundings);
    return deskhost::finish_output(status, surroundings);
  }
  return deskhost::run_command_line(args, surroundings);
}
