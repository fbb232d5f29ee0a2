#include "deskhost/console/action.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <ostream>
#include <sstream>

#include "deskhost/console/base_trouble.h"
#include "deskhost/console/hand_out.h"
#include "deskhost/console/output.h"
#include "deskhost/console/show_base.h"
#include "deskhost/console/show_document.h"
#include "deskhost/console/user_interface_dump.h"
#include "deskhost/document/document_writer.h"
#include "deskhost/model/application.h"
#include "deskhost/picture/draw.h"

namespace deskhost {
namespace {

constexpr std::int32_t import_command = 1;
constexpr std::int32_t export_command = 2;
constexpr std::int32_t last_language = 12;

std::int32_t number_of(const std::string& text) {
  return whole_number<std::int32_t>(text, INT32_MIN);
}

/// Without an add-in nothing would be seen of it.
void press(Stage& stage, std::int32_t command) {
  if (!stage.session.addin()) stage.note("no add-in is connected, so nothing happened");
  stage.session.command(command);
}

void run_command(Stage& stage) {
  const std::int32_t number = number_of(stage.words[0]);
  const auto& commands = stage.session.application().add_in->commands;
  const bool is_known = std::ranges::find(commands, number, &Command::number) != commands.end();
  if (stage.session.addin() && !is_known) stage.note("the add-in has no command " + std::to_string(number));
  press(stage, number);
}

void import(Stage& stage) {
  if (stage.words.empty()) return press(stage, import_command);
  const HandedOut files(stage.words[0], stage.words.size() > 1 ? stage.words[1] : "");
  press(stage, import_command);
  stage.count_files();
}

void show_command_states(Stage& stage) {
  std::string text;
  nlohmann::ordered_json json = nlohmann::ordered_json::object();
  for (const std::int32_t number : {0, 1, 2}) {
    const bool enabled = stage.session.command_ui(number);
    text += "ui " + std::to_string(number) + " enabled=" + (enabled ? "true" : "false") + "\n";
    json[std::to_string(number)] = enabled;
  }
  stage.show(text, json);
}

void change_language(Stage& stage) {
  const std::int32_t number = number_of(stage.words[0]);
  if (const auto note = note_about_language(number)) stage.note(*note);
  stage.session.language(number);
}

void save(Stage& stage) {
  if (stage.words[0] != standard_file) return stage.session.save(stage.words[0]);
  std::ostringstream text;  // so that nothing comes of one that can't be written
  write_document(*stage.session.document(), text);
  stage.out << text.str();
}

void dump(Stage& stage) {
  write_output(stage.words[0], stage.out,
               [&](std::ostream& out) { dump_user_interface(stage.session.application(), out); });
}

void draw(Stage& stage) {
  write_output(stage.words[0], stage.out,
               [&](std::ostream& out) { out << draw_document(*stage.session.document()); });
}

void show_knowledge_base(Stage& stage) {
  const Page page = with_base(stage.words[0], [](const std::string& source) {
    Base base(base_source(source), Base::Open::to_read);
    return show_base(base);
  });
  stage.show(page.text, page.json);
}

void show(Stage& stage) {
  const Page page = show_document(*stage.session.document());
  stage.show(page.text, page.json);
}

using enum ArgumentKind;
using enum DocumentUse;

// The overview gives neighbours that say the same one line.
constexpr const char* open_help = "close what is open, and open FILE; - is standard input";
constexpr const char* step_help = "a step of the take-down, in this order";

constexpr std::array<Action, 24> actions{{
    {"open", {document}, opens, open_help, [](Stage& s) { s.session.open(s.words[0]); }},
    {"new", {document}, opens, open_help, [](Stage& s) { s.session.open_new(s.words[0]); }},
    {"template", {document}, opens, open_help, [](Stage& s) { s.session.open_template(s.words[0]); }},
    {"preload",
     {document},
     first,
     "only first: FILE is open already while the add-in connects",
     [](Stage& s) { s.session.preload(s.words[0]); }},
    {"close", {}, closes, "close the document", [](Stage& s) { s.session.close(); }},
    {"command", {number}, ignores, "run the add-in's command N", run_command},
    {"import",
     {exchange_tools, exchange_speeds},
     ignores,
     "command 1; with FILE, of copies of the files, without the exporter",
     import},
    {"export", {}, ignores, "command 2", [](Stage& s) { press(s, export_command); }},
    {"ui", {}, ignores, "print whether commands 0, 1 and 2 are enabled", show_command_states},
    {"foreign",
     {number},
     ignores,
     "command N of another add-in",
     [](Stage& s) { s.session.foreign(number_of(s.words[0])); }},
    {"modify",
     {tool, parameters},
     needs,
     "change the tool whose ToolID is TOOL; ,, is a comma in a value",
     [](Stage& s) { s.session.modify(s.words[0], assignments_of(s.words[1])); }},
    {"delete", {tool}, needs, "delete that tool", [](Stage& s) { s.session.remove(s.words[0]); }},
    {"simulate", {}, needs, "run the simulation", [](Stage& s) { s.session.simulate(); }},
    {"toolbar",
     {placement},
     ignores,
     "move the add-in's toolbar: Visible, Position, Top, Left",
     [](Stage& s) { s.session.toolbar(assignments_of(s.words[0])); }},
    {"language", {number}, ignores, "change the host's language", change_language},
    {"save", {saved}, needs, "write the document; - is standard output", save},
    {"dump", {output}, ignores, "write the user interface as JSON; - is standard output", dump},
    {"show", {}, needs, "print the document", show},
    {"draw", {output}, needs, "draw the machine setup as SVG; - is standard output", draw},
    {"kb",
     {source},
     ignores,
     "print what is in a knowledge base: a file or a connection string",
     show_knowledge_base},
    {"shutdown", {}, ignores, step_help, [](Stage& s) { s.session.shutdown(); }},
    {"disconnect", {}, ignores, step_help, [](Stage& s) { s.session.disconnect(); }},
    {"release", {}, ignores, step_help, [](Stage& s) { s.session.release(); }},
    {"connect", {}, ignores, "connect the add-in again after release", [](Stage& s) { s.session.connect(); }},
}};

struct ArgumentName {
  ArgumentKind kind;
  const char* text;
};
constexpr std::array<ArgumentName, 11> argument_names{{
    {none, ""},
    {document, " FILE"},
    {saved, " FILE"},
    {output, " FILE"},
    {source, " SOURCE"},
    {number, " N"},
    {tool, " TOOL"},
    {parameters, " NAME=VALUE[,...]"},
    {placement, " NAME=VALUE[,...]"},
    {exchange_tools, " [FILE"},
    {exchange_speeds, " [KBFILE]]"},
}};

}  // namespace

std::span<const Action> all_actions() {
  return actions;
}

std::optional<std::string> note_about_language(std::int32_t number) {
  if (number >= 0 && number <= last_language) return std::nullopt;
  return "no texts have the number " + std::to_string(number) + ", so they are the English ones";
}

std::string usage_of(const Action& action) {
  std::string usage = action.name;
  for (const ArgumentKind kind : action.arguments)
    usage += std::ranges::find(argument_names, kind, &ArgumentName::kind)->text;
  return usage;
}

}  // namespace deskhost
