#include "deskhost/console/manual.h"

#include "deskhost/console/action.h"
#include "deskhost/console/options.h"

namespace deskhost {
namespace {

/// A text of a manual's page: what its language would take for a sign is none.
std::string plain(std::string_view text) {
  std::string result = text.starts_with('.') || text.starts_with('\'') ? "\\&" : "";
  for (const char c : text) {
    if (c == '\\' || c == '-') result += '\\';
    result += c == '\\' ? 'e' : c;
  }
  return result;
}

void add_entry(std::string& page, std::string_view name, std::string_view values, std::string_view help) {
  page += ".TP\n\\fB" + plain(name) + "\\fR";
  if (!values.empty()) page += " \\fI" + plain(values) + "\\fR";
  page += "\n" + plain(help) + ".\n";
}

void add_options(std::string& page, const std::vector<Option>& options) {
  for (const Option& option : options)
    add_entry(page, option.name, option.value ? option.value : "", option.help);
}

bool takes_file(const Action& action) {
  using enum ArgumentKind;
  const ArgumentKind kind = action.arguments[0];
  return kind == document || kind == saved || kind == output || kind == source || kind == exchange_tools;
}

std::string names_of(const std::vector<Option>& options, bool with_value) {
  std::string names;
  for (const Option& option : options) {
    if (!with_value || option.value != nullptr)
      names += (names.empty() ? "" : " ") + std::string(option.name);
  }
  return names;
}

/// As a pattern of a case: "a|b".
std::string pattern(std::string names) {
  for (char& c : names) c = c == ' ' ? '|' : c;
  return names;
}

}  // namespace

std::string full_version() {
  return "deskhost " + std::string(version) + " (" + std::to_string(sizeof(void*) * 8) + " bits" +
         (*commit == '\0' ? "" : ", commit " + std::string(commit)) + ")";
}

std::string man_page(const Surroundings& surroundings) {
  std::string page = ".TH DESKHOST 1 \"\" \"QVEsprit " + std::string(version) + "\" \"User Commands\"\n";
  page += ".SH NAME\ndeskhost \\- a headless CAM host for the QVEsprit add\\-in\n.SH SYNOPSIS\n";
  page += ".B deskhost\n[\\fIOPTION\\fR...] \\fIACTION\\fR [\\fIARGUMENT\\fR...]...\n";
  for (const SubCommand& command : surroundings.commands)
    page += ".br\n.B deskhost " + plain(command.name) + "\n" + plain(command.arguments) + "\n";
  page +=
      ".SH DESCRIPTION\nLoads the add\\-in as the CAM host does, keeps one document in memory, and carries "
      "out the "
      "actions from left to right. Results go to standard output, what happened on the way to standard "
      "error.\n"
      ".SH OPTIONS\n";
  add_options(page, session_options());
  page += ".SH ACTIONS\n";
  for (const Action& action : all_actions()) {
    const std::string usage = usage_of(action);
    const std::size_t blank = std::min(usage.find(' '), usage.size());
    add_entry(page, action.name, std::string_view(usage).substr(std::min(blank + 1, usage.size())),
              action.help);
  }
  for (const SubCommand& command : surroundings.commands) {
    page += ".SH DESKHOST " + plain(command.name) + "\n" + plain(command.help) + ".\n";
    add_options(page, command.options);
  }
  page +=
      ".SH EXIT STATUS\n.TP\n0\nall actions ran\n.TP\n1\nthe add\\-in handed back a failure, or \\-\\-strict "
      "found "
      "something\n.TP\n2\nwrong use, or output that was lost\n.TP\n3\nthe component can't be loaded\n"
      ".SH ENVIRONMENT\nQVEspritInstallPath, QVEspritExportPath, QVEspritUserModelsPath, QVMakeListPath, "
      "QVESPRIT_CODEPAGE, QVESPRIT_DECIMAL, QVESPRIT_REGISTRY, QVESPRIT_DRIVE_C and so on, NO_COLOR.\n";
  return page;
}

std::string bash_completion(const Surroundings& surroundings) {
  std::string actions, alone, with_file;
  for (const Action& action : all_actions()) {
    actions += std::string(action.name) + " ";
    if (takes_file(action)) with_file += (with_file.empty() ? "" : "|") + std::string(action.name);
  }
  std::string own;
  for (const SubCommand& command : surroundings.commands) {
    alone += std::string(command.name) + " ";
    own += "    " + std::string(command.name) + ") words=\"" + names_of(command.options, false) + "\" ;;\n";
  }
  const std::vector<Option> options = session_options();
  return "# bash completion for deskhost\n_deskhost() {\n  local current=$2 previous=$3 words\n"
         "  case $previous in\n    " +
         with_file + "|" + pattern(names_of(options, true)) +
         ") COMPREPLY=($(compgen -f -- \"$current\")); return ;;\n  esac\n  case ${COMP_WORDS[1]} in\n" +
         own + "    *) words=\"" + actions + alone + "help " + names_of(options, false) + "\" ;;\n  esac\n" +
         "  COMPREPLY=($(compgen -W \"$words\" -- \"$current\"))\n}\n"
         "complete -o filenames -o default -F _deskhost deskhost\n";
}

}  // namespace deskhost
