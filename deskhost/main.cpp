#include <filesystem>
#include <iostream>
#include <memory>

#include "deskhost/check/check.h"
#include "deskhost/check/shop_system.h"
#include "deskhost/console/command_line.h"
#include "deskhost/console/hand_out.h"
#include "deskhost/inspect/inspect.h"
#include "deskhost/system/file_path.h"
#include "deskhost/system/program.h"
#include "platform/component_runtime.h"

namespace {

constexpr const char* connect_class = "QVEsprit.Connect";

// A pipe would be waited for, and the loader looks for a name without a folder elsewhere too.
std::function<automation::Ref()> load(const std::string& file) {
  std::error_code ignored;
  if (!file.empty() && !std::filesystem::is_regular_file(deskhost::path_of(file), ignored))
    throw automation::Failure("there is no such file");
  return [component = std::shared_ptr(platform::load_component(file))] {
    return component->create(connect_class);
  };
}

}  // namespace

int main(int argc, char** argv) {
  if (const auto status = deskhost::check::run_as_shop_program()) return *status;
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
