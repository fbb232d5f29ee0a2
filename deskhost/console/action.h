#pragma once

#include <array>
#include <iosfwd>
#include <span>
#include <string>
#include <vector>

#include "deskhost/session/session.h"

namespace deskhost {

/// An action as the user gave it, checked as far as it can be before the session starts.
struct PlannedAction {
  const struct Action* action = nullptr;
  std::vector<std::string> arguments;
};

/// `output` is a file that is written anew, whatever it held.
enum class ArgumentKind { none, file, output, source, number, tool, parameters, placement };
/// What an action means for the open document.
enum class DocumentUse { ignores, needs, opens, closes, first };

struct Action {
  const char* name;
  std::array<ArgumentKind, 2> arguments;
  DocumentUse document;
  const char* help;
  void (*run)(Session& session, std::span<const std::string> arguments, std::ostream& out);
};

/// Takes the words apart into actions. Throws WrongUse for an unknown action, missing or malformed arguments,
/// and an action that can't stand where it stands.
std::vector<PlannedAction> plan_actions(std::span<const std::string> words);

/// A line for each action: name, arguments, what it does.
std::string help_on_actions();

}  // namespace deskhost
