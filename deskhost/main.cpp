#include <iostream>
#include <memory>

#include "deskhost/check/check.h"
#include "deskhost/console/command_line.h"
#include "deskhost/console/hand_out.h"
#include "deskhost/inspect/inspect.h"
#include "deskhost/system/program.h"
#include "platform/component_runtime.h"

namespace {

constexpr const char* connect_class = "QVEsprit.Connect";

std::function<automation::Ref()> load(const std::string& file) {
  return [component = std::shared_ptr(platform::load_component(file))] {
    return component->create(connect_class);
  };
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> args = deskhost::start_program(argc, argv);
  if (const auto status = deskhost::hand_out(argv[0])) return *status;
  const deskhost::Surroundings surroundings{
      std::cout,
      std::cerr,
      load,
      deskhost::errors_go_to_a_terminal(),
      {deskhost::inspect::sub_command(), deskhost::check::sub_command()}};
  return deskhost::run_command_line(args, surroundings);
}
