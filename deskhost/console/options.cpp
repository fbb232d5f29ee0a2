#include "deskhost/console/options.h"

#include <algorithm>
#include <array>

#include "deskhost/console/output.h"
#include "deskhost/system/program.h"

namespace deskhost {
namespace {

using Row = OptionRow<CommandLine>;
using Text = const std::string&;

std::int32_t number_in(Text text) {
  return whole_number<std::int32_t>(text, INT32_MIN);
}

std::uint64_t call_number(Text text) {
  try {
    return whole_number<std::uint64_t>(text, 1);
  } catch (const WrongUse&) {
    throw WrongUse("\"" + text + "\" is no number of a call: they count from 1",
                   "the trace has them as \"n\"");
  }
}

constexpr std::array rows{
    Row{{"--addin", "FILE", "component to load; default: beside deskhost, on Windows the registered one"},
        [](CommandLine& line, Text file) { line.addin = file; }},
    Row{{"--no-addin", nullptr, "run the host alone"}, [](CommandLine& line, Text) { line.no_addin = true; }},
    Row{{"--kb", "SOURCE", "knowledge base: a file or ODBC string; default: DESKHOST_KB, else temporary"},
        [](CommandLine& line, Text source) { line.kb = source; }},
    Row{{"--trace", "FILE", "write every host call, a JSON object a line"},
        [](CommandLine& line, Text file) { line.trace = file; }},
    Row{{"--json", "FILE", "write results and counts as JSON; - is standard output, in place of text"},
        [](CommandLine& line, Text file) { line.json = file; }},
    Row{{"--strict", nullptr, "status 1 also for a message box, a failed program, an empty file"},
        [](CommandLine& line, Text) { line.strict = true; }},
    Row{{"--timeout", "SECONDS", "end a program that runs longer; default: never"},
        [](CommandLine& line, Text text) {
          line.time_limit =
              std::chrono::seconds(std::min(whole_number<std::int32_t>(text, 1), 1'000'000'000));
        }},
    Row{{"--language", "N", "the host's language; default: 0"},
        [](CommandLine& line, Text text) { line.session.language = number_in(text); }},
    Row{{"--major-version", "N", "the host's version; default: 19"},
        [](CommandLine& line, Text text) { line.session.major_version = number_in(text); }},
    Row{{"--stale-menu", nullptr, "start with a menu entry of an earlier run"},
        [](CommandLine& line, Text) { line.session.stale_menu = true; }},
    Row{{"--fail-call", "N", "the N-th host call fails once"},
        [](CommandLine& line, Text text) { line.session.gate.fail_call = call_number(text); }},
    Row{{"--fail-from", "N", "every host call from the N-th on fails"},
        [](CommandLine& line, Text text) { line.session.gate.fail_from = call_number(text); }},
    Row{{"--quiet", nullptr, "no progress, no summary"}, [](CommandLine& line, Text) { line.quiet = true; }},
    Row{{"--help", nullptr, "show this; behind an action, or help ACTION, what that one does"},
        [](CommandLine& line, Text) { line.help = true; }},
    Row{{"--version", nullptr, "show the version"}, [](CommandLine& line, Text) { line.version = true; }},
};

bool is_kept(ArgumentKind kind) {
  using enum ArgumentKind;
  return kind == document || kind == saved || kind == source || kind == exchange_tools ||
         kind == exchange_speeds;
}

}  // namespace

std::vector<Option> session_options() {
  return options_of(rows);
}

void parse(Words words, std::span<const SubCommand> alone, CommandLine& line) {
  const auto others = take_options(line, rows, words, OptionsStand::in_front,
                                   "see deskhost --help; options stand in front of the actions");
  if (line.kb.empty()) line.kb = variable("DESKHOST_KB").value_or("");
  if (line.help || line.version) return;
  if (line.no_addin && !line.addin.empty())
    throw WrongUse("--no-addin and --addin exclude each other", "leave one out");
  line.actions = plan_actions(others, alone);
}

void refuse_lost_files(const CommandLine& line) {
  std::vector<NamedFile> kept{{"--addin", line.addin}, {"--kb", line.kb}};
  std::vector<NamedFile> outputs;
  for (const PlannedAction& planned : line.actions) {
    for (std::size_t i = 0; i < planned.arguments.size(); ++i) {
      const ArgumentKind kind = planned.action->arguments[i];
      const NamedFile named{planned.action->name, planned.arguments[i]};
      if (is_kept(kind)) kept.push_back(named);
      if (kind == ArgumentKind::output) outputs.push_back(named);
    }
  }
  for (const NamedFile& output : outputs) refuse_lost_file(output, kept);
  for (const NamedFile& own : {NamedFile{"--trace", line.trace}, NamedFile{"--json", line.json}}) {
    refuse_lost_file(own, kept);
    refuse_lost_file(own, outputs);
    outputs.push_back(own);
  }
}

}  // namespace deskhost
