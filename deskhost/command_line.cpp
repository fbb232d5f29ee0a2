#include "deskhost/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <fstream>
#include <memory>
#include <ostream>

#include "deskhost/action.h"
#include "deskhost/document_file.h"
#include "deskhost/knowledgebase/knowledge_base.h"
#include "deskhost/progress.h"
#include "platform/component_runtime.h"
#include "platform/files.h"

namespace deskhost {
namespace {

enum Status { all_well = 0, failures_handed_back = 1, wrong_use = 2, not_loaded = 3 };

struct CommandLine {
  std::string addin;
  bool no_addin = false;
  std::string kb;
  std::function<automation::Ref()> knowledge_base;
  std::string trace;
  bool quiet = false;
  SessionOptions session;
  std::vector<PlannedAction> actions;
  std::string help;  ///< asked for: nothing else is to be done
};

class Help final : public CLI::Formatter {
 public:
  std::string make_usage(const CLI::App* /*app*/, std::string /*name*/) const override {
    return "Usage: deskhost [OPTION...] ACTION [ARGUMENT...] [ACTION [ARGUMENT...]]...\n";
  }
};

void add_options(CLI::App& app, CommandLine& line) {
  auto* addin =
      app.add_option("--addin", line.addin, "the component to load; default: the one beside deskhost")
          ->type_name("FILE");
  app.add_flag("--no-addin", line.no_addin, "run the host alone")->excludes(addin);
  app.add_option("--kb", line.kb,
                 "knowledge base: a file or an ODBC connection string; default: a temporary one")
      ->type_name("SOURCE");
  app.add_option("--trace", line.trace, "write every host call, a JSON object a line")->type_name("FILE");
  app.add_option("--language", line.session.language, "the host's language; default: 0")->type_name("N");
  app.add_option("--major-version", line.session.major_version, "the host's version; default: 19")
      ->type_name("N");
  app.add_flag("--stale-menu", line.session.stale_menu, "start with a menu entry of an earlier run");
  app.add_option("--fail-call", line.session.gate.fail_call, "the N-th host call fails once")
      ->type_name("N")
      ->check(CLI::PositiveNumber);
  app.add_option("--fail-from", line.session.gate.fail_from, "every host call from the N-th on fails")
      ->type_name("N")
      ->check(CLI::PositiveNumber);
  app.add_flag("--quiet", line.quiet, "no progress, no summary");
}

void parse(std::vector<std::string> args, CommandLine& line) {
  CLI::App app("A headless CAM host for the add-in", "deskhost");
  app.formatter(std::make_shared<Help>());
  app.footer(help_on_actions());
  app.prefix_command();
  add_options(app, line);
  std::ranges::reverse(args);  // as the parser wants them
  try {
    app.parse(std::move(args));
  } catch (const CLI::CallForHelp&) {
    line.help = app.help();
    return;
  } catch (const CLI::ParseError& error) {
    throw WrongUse(error.what(), "see deskhost --help");
  }
  line.actions = plan_actions(app.remaining());
}

std::unique_ptr<std::ofstream> open_trace(const std::string& file) {
  if (file.empty()) return nullptr;
  auto stream = std::make_unique<std::ofstream>(file);
  if (!*stream) {
    throw WrongUse("--trace: \"" + file + "\" can't be written", "give a file in a folder that exists");
  }
  return stream;
}

void report(std::ostream& err, const WrongUse& wrong) {
  err << "deskhost: " << wrong.what() << "\nhint: " << wrong.hint << '\n';
}

/// Runs one action; false where it can't be carried out.
bool run_action(Session& session, const PlannedAction& planned, const Surroundings& surroundings) {
  const std::string where = std::string(planned.action->name) + ": ";
  try {
    planned.action->run(session, planned.arguments, surroundings.out);
    surroundings.out << std::flush;
    return true;
  } catch (const WrongUse& wrong) {
    report(surroundings.err, WrongUse(where + wrong.what(), wrong.hint));
  } catch (const DocumentFileError& error) {
    report(surroundings.err, WrongUse(where + error.what(), error.hint));
  } catch (const automation::Failure& failure) {
    report(surroundings.err, WrongUse(where + failure.what(), "look at the action's arguments"));
  }
  return false;
}

/// The actions up to the first one that can't be carried out; false there.
bool run_actions(Session& session, const CommandLine& line, const Surroundings& surroundings,
                 Progress& progress) {
  for (const PlannedAction& planned : line.actions) {
    const bool comes_before_connection = planned.action->document == DocumentUse::first;
    if (!comes_before_connection && &planned == line.actions.data()) session.connect();
    const bool done = run_action(session, planned, surroundings);
    progress.erase();
    if (!done) return false;
    if (comes_before_connection) session.connect();
  }
  return true;
}

/// Opens the knowledge base that the user named; a temporary one is made when the add-in needs it.
std::function<automation::Ref()> knowledge_base(const std::string& source) {
  try {
    return knowledge_base_maker(source);
  } catch (const automation::Failure& failure) {
    throw WrongUse(std::string("--kb: ") + failure.what(),
                   "give a file in a folder that exists, or an ODBC connection string");
  }
}

/// The session from connection to take-down; the exit status.
int run_session(CommandLine& line, const Surroundings& surroundings) {
  Progress progress(surroundings.err);
  line.session.on_failure = [&](std::string_view event, std::string_view text) {
    progress.erase();
    surroundings.err << "failure: " << event << ": " << text << std::endl;
  };
  if (surroundings.err_is_terminal && !line.quiet) {
    line.session.gate.observer = [&](CallKind kind, const automation::Object& target,
                                     automation::Member member) { progress.observe(kind, target, member); };
  }
  Session session(line.session);
  session.offer("KnowledgeBase", line.knowledge_base);
  const bool well_used = run_actions(session, line, surroundings, progress);
  session.take_down();
  progress.erase();
  const std::string left = session.gate().left_behind();
  if (!left.empty()) surroundings.err << "left behind: " << left << '\n';
  if (well_used && !line.quiet) {
    surroundings.err << "done: " << line.actions.size() << " actions, " << session.gate().calls()
                     << " host calls, " << session.failures() << " failures\n";
  }
  if (!well_used) return wrong_use;
  return session.failures() > 0 ? failures_handed_back : all_well;
}

}  // namespace

int run_command_line(const std::vector<std::string>& args, const Surroundings& surroundings) {
  CommandLine line;
  try {
    parse(args, line);
    if (!line.help.empty()) {
      surroundings.out << line.help;
      return all_well;
    }
    const auto trace = open_trace(line.trace);
    line.knowledge_base = knowledge_base(line.kb);
    line.session.gate.trace = trace.get();
    if (line.addin.empty())
      line.addin = platform::native_path(platform::component_folder() + "\\libQVEsprit.so");
    if (!line.no_addin) line.session.make_addin = surroundings.load(line.addin);
    return run_session(line, surroundings);
  } catch (const WrongUse& wrong) {
    report(surroundings.err, wrong);
    return wrong_use;
  } catch (const automation::Failure& failure) {
    surroundings.err << "deskhost: the component \"" << line.addin << "\" can't be loaded: " << failure.what()
                     << "\nhint: give it with --addin FILE, or run without it: --no-addin\n";
    return not_loaded;
  }
}

}  // namespace deskhost
