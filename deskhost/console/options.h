#pragma once

#include <chrono>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "deskhost/console/action.h"
#include "deskhost/console/command_line.h"

namespace deskhost {

/// A command line, taken apart.
struct CommandLine {
  std::string addin;
  bool no_addin = false;
  std::string kb;
  std::string trace;
  std::string json;
  bool quiet = false;
  bool strict = false;
  std::chrono::milliseconds time_limit{0};
  SessionOptions session;
  std::vector<PlannedAction> actions;
  bool help = false;     ///< asked for: nothing else is to be done
  bool version = false;  ///< the same
};

/// The options in front of the actions.
std::vector<Option> session_options();

/// The options are taken in one after the other, so that what was taken in before an error holds. Throws
/// WrongUse. `alone` are the commands that stand in place of the actions.
void parse(Words words, std::span<const SubCommand> alone, CommandLine& line);

/// Throws WrongUse where an output would be written over a file that the command line needs or saves.
void refuse_lost_files(const CommandLine& line);

}  // namespace deskhost
