#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "automation/object.h"

namespace deskhost {

/// What a run of the command line touches outside itself.
struct Surroundings {
  std::ostream& out;  ///< results
  std::ostream& err;  ///< what happened on the way
  /// Loads a component file; the result makes the add-in's object and keeps the component loaded. Throws
  /// Failure.
  std::function<std::function<automation::Ref()>(const std::string& file)> load;
  bool err_is_terminal = false;
};

/// Runs the desk host on its arguments (without the program's name) and gives the exit status: 0 all went
/// well, 1 the add-in handed back a failure, 2 wrong use or output that was lost, 3 the component can't be
/// loaded.
int run_command_line(const std::vector<std::string>& args, const Surroundings& surroundings);

/// `status`, or 2 and a message where results were lost on their way out.
int finish_output(int status, const Surroundings& surroundings);

}  // namespace deskhost
