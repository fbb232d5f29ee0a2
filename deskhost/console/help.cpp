#include "deskhost/console/help.h"

#include <algorithm>

#include "deskhost/console/action.h"
#include "deskhost/console/manual.h"
#include "deskhost/console/options.h"

namespace deskhost {
namespace {

constexpr const char* synopsis =
    "Usage: deskhost [OPTION...] ACTION [ARGUMENT...] [ACTION [ARGUMENT...]]...\n";

void add_line(std::string& text, const std::string& term, const char* help, std::size_t column) {
  std::string line = "  " + term;
  line.resize(std::max(line.size() + 2, column), ' ');
  text += line + help + "\n";
}

void add_options(std::string& text, const std::vector<Option>& options) {
  constexpr std::size_t column = 24;
  for (const Option& option : options) {
    const std::string term = std::string(option.name) + (option.value ? " " + std::string(option.value) : "");
    add_line(text, term, option.help, column);
  }
}

std::string usage_of(const SubCommand& command) {
  return std::string(command.name) + " " + command.arguments;
}

std::string help_on_action(const Action& action) {
  return "Usage: deskhost [OPTION...] ... " + usage_of(action) + "\n  " + action.help + "\n";
}

std::string help_on_word(const std::string& word, const Surroundings& surroundings) {
  std::vector<std::string_view> names;
  for (const Action& action : all_actions()) {
    if (word == action.name) return help_on_action(action);
    names.emplace_back(action.name);
  }
  for (const SubCommand& command : surroundings.commands) {
    if (word == command.name) return help_on(command);
    names.emplace_back(command.name);
  }
  if (word == "man") return man_page(surroundings);
  if (word == "bash") return bash_completion(surroundings);
  throw WrongUse("help: there is no action \"" + word + "\"" + did_you_mean(word, names),
                 "see deskhost --help");
}

}  // namespace

std::string help_text(const Surroundings& surroundings) {
  constexpr std::size_t column = 33;
  std::string text = synopsis;
  add_options(text, session_options());
  text += "Actions, from left to right in one session:\n";
  std::string names;  // of neighbours that share a line
  for (auto action = all_actions().begin(); action != all_actions().end(); ++action) {
    const auto next = std::next(action);
    const bool goes_on = next != all_actions().end() && std::string_view(next->help) == action->help;
    names += goes_on ? std::string(action->name) + ", " : usage_of(*action);
    if (goes_on) continue;
    add_line(text, names, action->help, column);
    names.clear();
  }
  text += "In place of options and actions:\n";
  for (const SubCommand& command : surroundings.commands)
    add_line(text, usage_of(command), command.help, column);
  return text;
}

std::string help_on(const SubCommand& command) {
  std::string text = "Usage: deskhost " + usage_of(command) + "\n" + command.help + "\n";
  add_options(text, command.options);
  return text;
}

std::optional<std::string> help_asked_for(Words words, const Surroundings& surroundings) {
  if (!words.empty() && words.front() == "help")
    return words.size() == 1 ? help_text(surroundings) : help_on_word(words[1], surroundings);
  for (std::size_t i = 1; i < words.size(); ++i) {
    const auto is_name = [&](const Action& action) { return words[i - 1] == action.name; };
    if (words[i] == "--help" && std::ranges::any_of(all_actions(), is_name))
      return help_on_word(words[i - 1], surroundings);
  }
  return std::nullopt;
}

}  // namespace deskhost
