#include "deskhost/console/action.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <ostream>

#include "deskhost/console/show_base.h"
#include "deskhost/console/show_document.h"
#include "deskhost/console/user_interface_dump.h"
#include "deskhost/picture/draw.h"
#include "deskhost/system/file_path.h"
#include "platform/files.h"

namespace deskhost {
namespace {

using Words = std::span<const std::string>;

std::int32_t number_of(const std::string& text) {
  std::int32_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || rest != end) {
    throw WrongUse("\"" + text + "\" is no number", "give a whole number");
  }
  return number;
}

std::vector<Assignment> assignments_of(const std::string& text) {
  std::vector<Assignment> assignments;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find(',', start), text.size());
    const std::string piece = text.substr(start, end - start);
    const std::size_t sign = piece.find('=');
    if (sign == std::string::npos || sign == 0) {
      throw WrongUse("\"" + piece + "\" is no assignment", "write NAME=VALUE[,NAME=VALUE...]");
    }
    assignments.emplace_back(piece.substr(0, sign), piece.substr(sign + 1));
    start = end + 1;
  }
  return assignments;
}

void show_command_states(Session& session, std::ostream& out) {
  for (const std::int32_t number : {0, 1, 2}) {
    out << "ui " << number << " enabled=" << (session.command_ui(number) ? "true" : "false") << '\n';
  }
}

void dump_to(Session& session, const std::string& file, std::ostream& out) {
  if (file == "-") return dump_user_interface(session.application(), out);
  std::ofstream stream(path_of(file), std::ios::binary);
  dump_user_interface(session.application(), stream);
  if (!stream.flush())
    throw WrongUse("\"" + file + "\" can't be written", "give a file in a folder that exists");
}

void draw_to(Session& session, const std::string& file, std::ostream& out) {
  const std::string page = draw_document(*session.document());
  if (file == "-") {
    out << page;
    return;
  }
  std::ofstream stream(path_of(file), std::ios::binary);
  stream << page;
  if (!stream.flush())
    throw WrongUse("\"" + file + "\" can't be written", "give a file in a folder that exists");
}

void show_knowledge_base(const std::string& source, std::ostream& out) {
  Base base(base_source(source), Base::Open::to_read);
  show_base(base, out);
}

using enum ArgumentKind;
using enum DocumentUse;

constexpr std::array<Action, 24> actions{{
    {"open",
     {file},
     opens,
     "close the open document and open FILE",
     [](Session& s, Words w, std::ostream&) { s.open(w[0]); }},
    {"new",
     {file},
     opens,
     "the same as a new document",
     [](Session& s, Words w, std::ostream&) { s.open_new(w[0]); }},
    {"template",
     {file},
     opens,
     "the same as a template",
     [](Session& s, Words w, std::ostream&) { s.open_template(w[0]); }},
    {"preload",
     {file},
     first,
     "only first: FILE is open already while the add-in connects",
     [](Session& s, Words w, std::ostream&) { s.preload(w[0]); }},
    {"close", {}, closes, "close the document", [](Session& s, Words, std::ostream&) { s.close(); }},
    {"command",
     {number},
     ignores,
     "run the add-in's command N",
     [](Session& s, Words w, std::ostream&) { s.command(number_of(w[0])); }},
    {"import", {}, ignores, "command 1", [](Session& s, Words, std::ostream&) { s.command(1); }},
    {"export", {}, ignores, "command 2", [](Session& s, Words, std::ostream&) { s.command(2); }},
    {"ui",
     {},
     ignores,
     "print whether commands 0, 1 and 2 are enabled",
     [](Session& s, Words, std::ostream& out) { show_command_states(s, out); }},
    {"foreign",
     {number},
     ignores,
     "command N of another add-in",
     [](Session& s, Words w, std::ostream&) { s.foreign(number_of(w[0])); }},
    {"modify",
     {tool, parameters},
     needs,
     "change parameters of the tool whose ToolID is TOOL",
     [](Session& s, Words w, std::ostream&) { s.modify(w[0], assignments_of(w[1])); }},
    {"delete", {tool}, needs, "delete that tool", [](Session& s, Words w, std::ostream&) { s.remove(w[0]); }},
    {"simulate", {}, needs, "run the simulation", [](Session& s, Words, std::ostream&) { s.simulate(); }},
    {"toolbar",
     {placement},
     ignores,
     "move the add-in's toolbar: Visible, Position, Top, Left",
     [](Session& s, Words w, std::ostream&) { s.toolbar(assignments_of(w[0])); }},
    {"language",
     {number},
     ignores,
     "change the host's language",
     [](Session& s, Words w, std::ostream&) { s.language(number_of(w[0])); }},
    {"save", {file}, needs, "write the document", [](Session& s, Words w, std::ostream&) { s.save(w[0]); }},
    {"dump",
     {output},
     ignores,
     "write the user interface as JSON; - is standard output",
     [](Session& s, Words w, std::ostream& out) { dump_to(s, w[0], out); }},
    {"show",
     {},
     needs,
     "print the document",
     [](Session& s, Words, std::ostream& out) { show_document(*s.document(), out); }},
    {"draw",
     {output},
     needs,
     "draw the machine setup as SVG; - is standard output",
     [](Session& s, Words w, std::ostream& out) { draw_to(s, w[0], out); }},
    {"kb",
     {source},
     ignores,
     "print what is in a knowledge base: a file or a connection string",
     [](Session&, Words w, std::ostream& out) { show_knowledge_base(w[0], out); }},
    {"shutdown",
     {},
     ignores,
     "take-down, first step",
     [](Session& s, Words, std::ostream&) { s.shutdown(); }},
    {"disconnect",
     {},
     ignores,
     "take-down, second step",
     [](Session& s, Words, std::ostream&) { s.disconnect(); }},
    {"release", {}, ignores, "take-down, last step", [](Session& s, Words, std::ostream&) { s.release(); }},
    {"connect",
     {},
     ignores,
     "connect the add-in again after release",
     [](Session& s, Words, std::ostream&) { s.connect(); }},
}};

struct ArgumentName {
  ArgumentKind kind;
  const char* text;
};
constexpr std::array<ArgumentName, 8> argument_names{{
    {none, ""},
    {file, "FILE"},
    {output, "FILE"},
    {source, "SOURCE"},
    {number, "N"},
    {tool, "TOOL"},
    {parameters, "NAME=VALUE[,...]"},
    {placement, "NAME=VALUE[,...]"},
}};

std::string usage_of(const Action& action) {
  std::string usage = action.name;
  for (const ArgumentKind kind : action.arguments) {
    const auto row = std::ranges::find(argument_names, kind, &ArgumentName::kind);
    if (kind != none) usage += std::string(" ") + row->text;
  }
  return usage;
}

const Action& action_named(const std::string& name) {
  for (const Action& action : actions) {
    if (name == action.name) return action;
  }
  if (name.starts_with("-")) {
    throw WrongUse("unknown option \"" + name + "\"",
                   "see deskhost --help; options stand in front of the actions");
  }
  if (name == "check") {
    throw WrongUse("\"check\" runs sessions of its own",
                   "give it alone: deskhost check [--strictness N] [--component FILE]");
  }
  throw WrongUse("unknown action \"" + name + "\"", "see deskhost --help");
}

void check_argument(ArgumentKind kind, const std::string& text) {
  if (kind == number) number_of(text);
  if (kind == parameters) assignments_of(text);
  if (kind == placement) check_placement(assignments_of(text));
}

std::size_t argument_count(const Action& action) {
  return action.arguments.size() - static_cast<std::size_t>(std::ranges::count(action.arguments, none));
}

/// Takes the arguments of `action` from the front of `words`.
PlannedAction take_arguments(const Action& action, Words& words) {
  PlannedAction planned{&action, {}};
  const std::size_t wanted = argument_count(action);
  if (words.size() < wanted) {
    throw WrongUse("an argument of \"" + std::string(action.name) + "\" is missing",
                   "usage: " + usage_of(action));
  }
  for (std::size_t i = 0; i < wanted; ++i) {
    try {
      check_argument(action.arguments[i], words[i]);
    } catch (const WrongUse& wrong) {
      throw WrongUse(std::string(action.name) + ": " + wrong.what(), wrong.hint);
    }
    planned.arguments.push_back(words[i]);
  }
  words = words.subspan(wanted);
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

std::vector<PlannedAction> plan_actions(Words words) {
  std::vector<PlannedAction> plan;
  bool is_open = false;
  while (!words.empty()) {
    const Action& action = action_named(words.front());
    words = words.subspan(1);
    is_open = document_after(action, plan.empty(), is_open);
    plan.push_back(take_arguments(action, words));
  }
  if (plan.empty()) throw WrongUse("no action", "see deskhost --help");
  return plan;
}

std::string help_on_actions() {
  constexpr std::size_t column = 32;
  std::string text = "Actions, from left to right in one session:\n";
  for (const Action& action : actions) {
    std::string line = "  " + usage_of(action);
    line.resize(std::max(line.size() + 1, column), ' ');
    text += line + action.help + "\n";
  }
  text += "Alone: deskhost check tries to break the component; see deskhost check --help\n";
  return text;
}

}  // namespace deskhost
