#include "deskhost/console/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <memory>
#include <ostream>

#include "deskhost/console/action.h"
#include "deskhost/console/progress.h"
#include "deskhost/document/document_file.h"
#include "deskhost/knowledgebase/knowledge_base.h"
#include "deskhost/system/file_path.h"
#include "platform/component_runtime.h"
#include "platform/files.h"

namespace deskhost {
namespace {

enum Status { all_well = 0, failures_handed_back = 1, wrong_use = 2, not_loaded = 3 };

/// The component's file beside the program; none where the registered component is the default.
constexpr std::string_view component_beside = COMPONENT_BESIDE;

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

/// A whole number from 1 that 64 bits hold.
std::string refuse_call_number(const std::string& text) {
  std::uint64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error == std::errc() && rest == end && number > 0) return {};
  return "\"" + text + "\" is no number of a call: they count from 1";
}

void add_options(CLI::App& app, CommandLine& line) {
  auto* addin =
      app.add_option("--addin", line.addin,
                     "the component to load; default: the one beside deskhost; on Windows the registered one")
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
      ->check(refuse_call_number);
  app.add_option("--fail-from", line.session.gate.fail_from, "every host call from the N-th on fails")
      ->type_name("N")
      ->check(refuse_call_number);
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

struct NamedFile {
  std::string named_by;
  std::string file;
};

/// Whether both name one file, be it there already or not. Devices and pipes may be shared.
bool is_same_file(const std::string& name_a, const std::string& name_b) {
  namespace fs = std::filesystem;
  const fs::path a = path_of(name_a);
  const fs::path b = path_of(name_b);
  std::error_code ignored;
  if (fs::exists(a, ignored) && !fs::is_regular_file(a, ignored)) return false;
  if (fs::equivalent(a, b, ignored)) return true;
  const fs::path full = fs::weakly_canonical(fs::absolute(a, ignored), ignored);
  return !full.empty() && full == fs::weakly_canonical(fs::absolute(b, ignored), ignored);
}

/// Throws WrongUse where an output would be written over a file that the command line needs or saves.
void refuse_lost_files(const CommandLine& line) {
  std::vector<NamedFile> kept{{"--addin", line.addin}, {"--kb", line.kb}};
  std::vector<NamedFile> outputs;
  for (const PlannedAction& planned : line.actions) {
    for (std::size_t i = 0; i < planned.arguments.size(); ++i) {
      const ArgumentKind kind = planned.action->arguments[i];
      const NamedFile named{planned.action->name, planned.arguments[i]};
      if (kind == ArgumentKind::file || kind == ArgumentKind::source) kept.push_back(named);
      if (kind == ArgumentKind::output && named.file != "-") outputs.push_back(named);
    }
  }
  const auto refuse = [](const NamedFile& output, const std::vector<NamedFile>& others) {
    for (const NamedFile& other : others) {
      if (other.file.empty() || !is_same_file(output.file, other.file)) continue;
      throw WrongUse(
          output.named_by + ": \"" + output.file + "\" would be lost: " + other.named_by + " names it too",
          "give another file");
    }
  };
  for (const NamedFile& output : outputs) refuse(output, kept);
  if (line.trace.empty()) return;
  refuse({"--trace", line.trace}, kept);
  refuse({"--trace", line.trace}, outputs);
}

std::unique_ptr<std::ofstream> open_trace(const std::string& file) {
  if (file.empty()) return nullptr;
  auto stream = std::make_unique<std::ofstream>(path_of(file), std::ios::binary);
  if (!*stream) {
    throw WrongUse("--trace: \"" + file + "\" can't be written", "give a file in a folder that exists");
  }
  return stream;
}

void report(std::ostream& err, const WrongUse& wrong) {
  err << "deskhost: " << wrong.what() << "\nhint: " << wrong.hint << '\n';
}

/// The exit status once the trace has been written to its end, or hasn't.
int finish_trace(std::ofstream* trace, const std::string& file, int status,
                 const Surroundings& surroundings) {
  if (!trace) return status;
  trace->close();
  if (*trace) return status;
  report(surroundings.err, WrongUse("--trace: \"" + file + "\" couldn't be written to its end",
                                    "check the space where it stands"));
  return wrong_use;
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

int run(const std::vector<std::string>& args, const Surroundings& surroundings) {
  CommandLine line;
  try {
    parse(args, line);
    if (!line.help.empty()) {
      surroundings.out << line.help;
      return all_well;
    }
    if (line.addin.empty() && !component_beside.empty())
      line.addin = platform::native_path(platform::component_folder() + "\\" + std::string(component_beside));
    refuse_lost_files(line);
    const auto trace = open_trace(line.trace);
    line.knowledge_base = knowledge_base(line.kb);
    line.session.gate.trace = trace.get();
    if (!line.no_addin) line.session.make_addin = surroundings.load(line.addin);
    return finish_trace(trace.get(), line.trace, run_session(line, surroundings), surroundings);
  } catch (const WrongUse& wrong) {
    report(surroundings.err, wrong);
    return wrong_use;
  } catch (const automation::Failure& failure) {
    const std::string which = line.addin.empty() ? "that is registered" : "\"" + line.addin + "\"";
    surroundings.err << "deskhost: the component " << which << " can't be loaded: " << failure.what()
                     << "\nhint: give it with --addin FILE, or run without it: --no-addin\n";
    return not_loaded;
  }
}

}  // namespace

int run_command_line(const std::vector<std::string>& args, const Surroundings& surroundings) {
  return finish_output(run(args, surroundings), surroundings);
}

int finish_output(int status, const Surroundings& surroundings) {
  if (surroundings.out.flush()) return status;
  report(surroundings.err, WrongUse("standard output couldn't be written to its end",
                                    "check where it goes and the space there"));
  return wrong_use;
}

}  // namespace deskhost
