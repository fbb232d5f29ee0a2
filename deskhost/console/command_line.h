#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "automation/object.h"
#include "deskhost/console/words.h"

namespace deskhost {

/// What a run of the command line touches outside itself.
struct Surroundings {
  std::ostream& out;  ///< results
  std::ostream& err;  ///< what happened on the way
  /// Loads a component file; the result makes the add-in's object and keeps the component loaded. Throws
  /// Failure.
  std::function<std::function<automation::Ref()>(const std::string& file)> load;
  bool err_is_terminal = false;
  /// What can stand in place of the actions.
  std::vector<struct SubCommand> commands = {};
};

/// A word that stands in place of the actions, with options of its own.
struct SubCommand {
  const char* name;
  const char* arguments;  ///< "[OPTION...]"
  const char* help;
  std::vector<Option> options;
  int (*run)(const std::vector<std::string>& args, const Surroundings& surroundings);
};

/// The component's file beside the program; empty where the registered one is the default.
std::string default_component();

/// Runs the desk host on its arguments (without the program's name) and gives the exit status: 0 all went
/// well, 1 the add-in handed back a failure, 2 wrong use or output that was lost, 3 the component can't be
/// loaded.
int run_command_line(const std::vector<std::string>& args, const Surroundings& surroundings);

}  // namespace deskhost
