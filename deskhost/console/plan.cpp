#include <algorithm>

#include "deskhost/console/action.h"
#include "deskhost/console/command_line.h"

namespace deskhost {
namespace {

using enum ArgumentKind;
using enum DocumentUse;

const Action* find_action(std::string_view name) {
  const auto actions = all_actions();
  const auto found =
      std::ranges::find(actions, name, [](const Action& a) { return std::string_view(a.name); });
  return found == actions.end() ? nullptr : &*found;
}

const Action& action_named(const std::string& name, std::span<const SubCommand> alone) {
  if (const Action* action = find_action(name)) return *action;
  if (looks_like_option(name)) {
    throw WrongUse("unknown option \"" + name + "\"",
                   "see deskhost --help; options stand in front of the actions");
  }
  std::vector<std::string_view> names;
  for (const Action& action : all_actions()) names.emplace_back(action.name);
  for (const SubCommand& command : alone) {
    if (name == command.name) {
      throw WrongUse("\"" + name + "\" stands alone, in place of options and actions",
                     "usage: deskhost " + name + " " + command.arguments);
    }
    names.emplace_back(command.name);
  }
  throw WrongUse("unknown action \"" + name + "\"" + did_you_mean(name, names), "see deskhost --help");
}

bool may_be_left_out(ArgumentKind kind) {
  return kind == exchange_tools || kind == exchange_speeds;
}

void check_argument(ArgumentKind kind, const std::string& text) {
  if (kind == number) whole_number<std::int32_t>(text, INT32_MIN);
  if (kind == parameters) assignments_of(text);
  if (kind == placement) check_placement(assignments_of(text));
}

/// Takes the arguments of `action` from the front of `words`. One that may be left out isn't there where the
/// next word is an action's name.
PlannedAction take_arguments(const Action& action, Words& words) {
  PlannedAction planned{&action, {}};
  for (const ArgumentKind kind : action.arguments) {
    if (kind == none) break;
    if (may_be_left_out(kind) && (words.empty() || find_action(words.front()) != nullptr)) break;
    const bool is_missing = words.empty();
    if (is_missing || (words.front().empty() && kind != tool)) {  // a tool may have an empty ToolID
      throw WrongUse(
          "an argument of \"" + std::string(action.name) + "\" is " + (is_missing ? "missing" : "empty"),
          "usage: " + usage_of(action));
    }
    try {
      check_argument(kind, words.front());
    } catch (const WrongUse& wrong) {
      throw WrongUse(std::string(action.name) + ": " + wrong.what(), wrong.hint);
    }
    planned.arguments.push_back(words.front());
    words = words.subspan(1);
  }
  return planned;
}

/// Whether a document is open behind `action`; throws where the action can't stand here.
bool document_after(const Action& action, bool is_first, bool is_open) {
  if (action.document == first && !is_first) {
    throw WrongUse(std::string(action.name) + ": it isn't the first action",
                   "put it in front, or use \"open\"");
  }
  if ((action.document == needs || action.document == closes) && !is_open) {
    throw WrongUse(std::string(action.name) + ": no document is open", "open one before, with \"open FILE\"");
  }
  if (action.document == opens || action.document == first) return true;
  return action.document == closes ? false : is_open;
}

}  // namespace

std::vector<Assignment> assignments_of(const std::string& text) {
  std::vector<Assignment> assignments;
  std::string piece;
  const auto take_piece = [&] {
    const std::size_t sign = piece.find('=');
    if (sign == std::string::npos || sign == 0) {
      throw WrongUse("\"" + piece + "\" is no assignment",
                     "write NAME=VALUE[,NAME=VALUE...]; a comma in a value is written twice");
    }
    assignments.emplace_back(piece.substr(0, sign), piece.substr(sign + 1));
    piece.clear();
  };
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool is_comma = text[i] == ',';
    const bool is_doubled = is_comma && i + 1 < text.size() && text[i + 1] == ',';
    if (is_comma && !is_doubled) {
      take_piece();
    } else {
      piece += text[i];
      i += is_doubled ? 1 : 0;
    }
  }
  take_piece();
  return assignments;
}

std::vector<PlannedAction> plan_actions(Words words, std::span<const SubCommand> alone) {
  std::vector<PlannedAction> plan;
  bool is_open = false;
  while (!words.empty()) {
    const Action& action = action_named(words.front(), alone);
    words = words.subspan(1);
    is_open = document_after(action, plan.empty(), is_open);
    plan.push_back(take_arguments(action, words));
  }
  if (plan.empty()) throw WrongUse("no action", "see deskhost --help");
  return plan;
}

}  // namespace deskhost
