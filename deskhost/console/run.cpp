#include "deskhost/console/run.h"

#include <algorithm>
#include <optional>
#include <ostream>

#include "deskhost/console/site_check.h"
#include "deskhost/document/document_file.h"
#include "deskhost/document/json_writer.h"
#include "deskhost/system/file_path.h"
#include "deskhost/system/program.h"
#include "platform/host_watch.h"

namespace deskhost {
namespace {

/// The add-in's command that an action runs; none for another one.
std::optional<std::int32_t> command_of(const PlannedAction& planned) {
  const std::string_view name = planned.action->name;
  if (name == "import") return 1;
  if (name == "export") return 2;
  if (name == "command") return whole_number<std::int32_t>(planned.arguments[0], INT32_MIN);
  return std::nullopt;
}

std::string name_in_path(const std::string& path) {
  return path.substr(path.find_last_of("/\\") + 1);
}

std::string joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) all += (all.empty() ? "\"" : ", \"") + text + "\"";
  return all;
}

/// How a program failed, in the host's own words: a message box of the add-in may name another file.
std::string text_of(const platform::ProgramRun& run) {
  if (run.program.empty()) return "no program was found: tried " + joined(run.attempts);
  const std::string program = "the program \"" + run.program + "\" ";
  if (!run.failure.empty()) return program + "can't be started: " + run.failure;
  if (run.timed_out) return program + "ran into the time limit and was ended";
  if (run.signal != 0) return program + "was ended by signal " + std::to_string(run.signal);
  return program + "ended with status " + std::to_string(run.status);
}

}  // namespace

std::string json_of(const Results& results, int status, const Reporter& reporter) {
  const nlohmann::ordered_json page{{"status", status},
                                    {"actions", results.actions},
                                    {"summary", results.summary},
                                    {"messages", reporter.told()}};
  return page.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

Run::Run(CommandLine& line, const Surroundings& surroundings, Reporter& reporter, Results& results)
    : line_(line),
      surroundings_(surroundings),
      reporter_(reporter),
      results_(results),
      progress_(surroundings.err) {
  watch_system();
  watch_session();
}

Run::~Run() {
  platform::set_watch(std::nullopt);
}

void Run::tell(const char* kind, const std::string& text) {
  progress_.erase();
  reporter_.tell(kind, text);
}

void Run::watch_system() {
  platform::Watch watch;
  watch.message_box = [this] {
    progress_.erase();
    ledger_.message_box();
  };
  watch.program_runs = set_running_program;
  watch.program_wrote = [this](std::string_view program, std::string_view text) {
    tell("program", name_in_path(std::string(program)) + ": " + std::string(text));
  };
  watch.program_ended = [this](const platform::ProgramRun& run) {
    if (run.went_well()) return;
    ledger_.program_failed();
    tell("seen", text_of(run));
  };
  watch.file_failed = [this](std::string_view file, std::string_view why) {
    tell("seen", "the file \"" + std::string(file) + "\": " + std::string(why));
  };
  watch.time_limit = line_.time_limit;
  platform::set_watch(std::move(watch));
}

void Run::watch_session() {
  const bool shows_progress = surroundings_.err_is_terminal && !line_.quiet;
  SessionOptions& session = line_.session;
  session.on_failure = [this](std::string_view event, std::string_view text) {
    tell("failure", std::string(event) + ": " + std::string(text));
  };
  session.on_doubt = [this](const std::string& text) { tell("warning", text); };
  session.gate.observer = [this, shows_progress](CallKind kind, const automation::Object& target,
                                                 automation::Member member) {
    if (ledger_.observe(kind, target, member) && shows_progress) progress_.tool(ledger_.lines_in_file());
  };
  session.gate.listener = [this](const EndedCall& call) {
    if (call.put != nullptr && call.refusal != nullptr) ledger_.refused(call.target, *call.put);
  };
}

int Run::to_its_end(const std::function<automation::Ref()>& knowledge_base) {
  const bool uses_site = std::ranges::any_of(
      line_.actions, [](const PlannedAction& each) { return command_of(each) && each.arguments.empty(); });
  const std::optional<SiteCheck> site =
      uses_site && !line_.no_addin ? std::optional<SiteCheck>(std::in_place) : std::nullopt;
  if (site) {
    for (const std::string& warning : site->warnings()) tell("warning", warning);
  }
  if (const auto note = note_about_language(line_.session.language)) tell("note", "--language: " + *note);
  Session session(line_.session);
  session.offer("KnowledgeBase", knowledge_base);
  const bool well_used = run_actions(session);
  session.take_down();
  progress_.erase();
  const std::string left = session.gate().left_behind();
  if (!left.empty()) tell("left behind", left);
  sum_up(session);
  if (!well_used) return wrong_use;
  const Counts& counts = ledger_.counts();
  const bool is_flawed = counts.message_boxes + counts.programs_failed + counts.empty_files > 0;
  return session.failures() > 0 || (line_.strict && is_flawed) ? failures_handed_back : all_well;
}

void Run::sum_up(Session& session) {
  results_.summary = {{"actions", results_.actions.size()},
                      {"host_calls", session.gate().calls()},
                      {"failures", session.failures()}};
  results_.summary.update(json_of(ledger_.counts()));
  const bool all_ran = results_.actions.size() == line_.actions.size();
  if (!all_ran || line_.quiet) return;
  surroundings_.err << "done: " << line_.actions.size() << " actions, " << session.gate().calls()
                    << " host calls, " << session.failures() << " failures\n"
                    << text_of(ledger_.counts());
}

/// The actions up to the first one that can't be carried out; false there.
bool Run::run_actions(Session& session) {
  for (const PlannedAction& planned : line_.actions) {
    const bool comes_before_connection = planned.action->document == DocumentUse::first;
    if (!comes_before_connection && &planned == line_.actions.data()) session.connect();
    const bool done = run_action(session, planned);
    progress_.restart();
    if (!done) return false;
    if (comes_before_connection) session.connect();
  }
  return true;
}

bool Run::run_action(Session& session, const PlannedAction& planned) {
  nlohmann::ordered_json shown;
  Stage stage{session,
              planned.arguments,
              surroundings_.out,
              [&](const std::string& text, const nlohmann::ordered_json& json) {
                if (!results_.instead_of_text) surroundings_.out << text;
                shown = json;
              },
              [&](const std::string& text) { tell("note", std::string(planned.action->name) + ": " + text); },
              [&] { ledger_.lines_in_file(); }};
  const auto command = session.addin() ? command_of(planned) : std::nullopt;
  if (command) ledger_.before_command(*command, session.document().get());
  const bool done = run_told(planned, stage);
  if (command) ledger_.after_command(*command, session.document().get());
  surroundings_.out << std::flush;
  if (!done) return false;
  results_.actions.push_back({{"action", planned.action->name}, {"arguments", planned.arguments}});
  if (!shown.is_null()) results_.actions.back()["result"] = std::move(shown);
  return true;
}

bool Run::run_told(const PlannedAction& planned, Stage& stage) {
  const std::string where = std::string(planned.action->name) + ": ";
  try {
    planned.action->run(stage);
    return true;
  } catch (const WrongUse& wrong) {
    reporter_.tell(WrongUse(where + wrong.what(), wrong.hint));
  } catch (const DocumentFileError& error) {
    reporter_.tell(WrongUse(where + error.what(), error.hint));
  } catch (const NotUtf8& error) {
    reporter_.tell(WrongUse(where + error.what() + ": the text isn't UTF-8", "give it a new text"));
  } catch (const automation::Failure& failure) {
    reporter_.tell(WrongUse(where + failure.what(), "look at the action's arguments"));
  }
  return false;
}

}  // namespace deskhost
