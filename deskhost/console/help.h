#pragma once

#include <optional>
#include <string>

#include "deskhost/console/command_line.h"

namespace deskhost {

/// What `--help` shows.
std::string help_text(const Surroundings& surroundings);

/// The answer to "help", "help WORD" and "WORD --help", also in the midst of actions; nothing for words that
/// ask for no help. Throws WrongUse for what isn't known.
std::optional<std::string> help_asked_for(Words words, const Surroundings& surroundings);

/// "Usage: …", what it does, and the options, for a command of its own.
std::string help_on(const SubCommand& command);

}  // namespace deskhost
