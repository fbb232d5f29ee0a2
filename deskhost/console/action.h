#pragma once

#include <array>
#include <functional>
#include <iosfwd>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "deskhost/console/words.h"
#include "deskhost/session/session.h"

namespace deskhost {

struct SubCommand;

/// An action as the user gave it, checked as far as it can be before the session starts.
struct PlannedAction {
  const struct Action* action = nullptr;
  std::vector<std::string> arguments;
};

/// `document` is read, `saved` and `output` are files that are written anew, whatever they held. Arguments of
/// the `exchange` kinds may be left out.
enum class ArgumentKind {
  none,
  document,
  saved,
  output,
  source,
  number,
  tool,
  parameters,
  placement,
  exchange_tools,
  exchange_speeds
};
/// What an action means for the open document.
enum class DocumentUse { ignores, needs, opens, closes, first };

/// What an action works with.
struct Stage {
  Session& session;
  Words words;
  /// Standard output.
  std::ostream& out;
  /// Takes what the action shows: a text for a reader, and the same for a program.
  std::function<void(const std::string& text, const nlohmann::ordered_json& json)> show;
  /// Tells the user of something that may not be what was meant.
  std::function<void(const std::string& text)> note;
  /// The exchange files of the command that ran are still there, and can be counted.
  std::function<void()> count_files;
};

struct Action {
  const char* name;
  std::array<ArgumentKind, 2> arguments;
  DocumentUse document;
  const char* help;
  void (*run)(Stage& stage);
};

std::span<const Action> all_actions();

/// "modify TOOL NAME=VALUE[,...]"
std::string usage_of(const Action& action);

/// NAME=VALUE[,NAME=VALUE...], where ",," stands for a comma in a value. Throws WrongUse.
std::vector<Assignment> assignments_of(const std::string& text);

/// Takes the words apart into actions. Throws WrongUse for an unknown action, missing or malformed arguments,
/// an action that can't stand where it stands, and a command of `alone`.
std::vector<PlannedAction> plan_actions(Words words, std::span<const SubCommand> alone);

/// What a user is told of a language that there are no texts for.
std::optional<std::string> note_about_language(std::int32_t number);

}  // namespace deskhost
