#include "deskhost/console/command_line.h"

#include <algorithm>
#include <memory>
#include <ostream>

#include "deskhost/console/base_trouble.h"
#include "deskhost/console/help.h"
#include "deskhost/console/manual.h"
#include "deskhost/console/options.h"
#include "deskhost/console/output.h"
#include "deskhost/console/run.h"
#include "deskhost/knowledgebase/knowledge_base.h"
#include "deskhost/system/program.h"
#include "platform/component_runtime.h"
#include "platform/files.h"
#include "platform/text.h"

namespace deskhost {
namespace {

/// The component's file beside the program; none where the registered component is the default.
constexpr std::string_view component_beside = COMPONENT_BESIDE;

/// Opens the knowledge base that the user named; a temporary one is made when the add-in needs it.
std::function<automation::Ref()> knowledge_base(const std::string& source) {
  if (source.empty()) return knowledge_base_maker(source);
  try {
    return with_base(source, knowledge_base_maker);
  } catch (const WrongUse& wrong) {
    throw WrongUse(std::string("--kb: ") + wrong.what(), wrong.hint);
  }
}

void refuse_wrong_settings() {
  const auto wrong = platform::wrong_text_setting();
  if (!wrong) return;
  throw WrongUse("the variable " + wrong->variable + " is \"" + wrong->value + "\"",
                 "it has to be " + wrong->wanted + "; without it there is a default");
}

std::unique_ptr<Output> open_for(const char* option, const std::string& file, std::ostream& out) {
  if (file.empty()) return nullptr;
  try {
    return std::make_unique<Output>(file, out);
  } catch (const WrongUse& wrong) {
    throw WrongUse(std::string(option) + ": " + wrong.what(), wrong.hint);
  }
}

/// The exit status once an output has been written to its end, or hasn't.
int finish(Output* output, const char* option, int status, Reporter& reporter) {
  if (output == nullptr) return status;
  try {
    output->finish();
    return status;
  } catch (const WrongUse& wrong) {
    reporter.tell(WrongUse(std::string(option) + ": " + wrong.what(), wrong.hint));
    return Status::wrong_use;
  }
}

void tell_not_loaded(const std::string& file, const automation::Failure& failure, Reporter& reporter) {
  const std::string which = file.empty() ? "that is registered" : "\"" + file + "\"";
  reporter.tell(WrongUse("the component " + which + " can't be loaded: " + failure.what(),
                         "give it with --addin FILE, or run without it: --no-addin"));
}

/// The session that the command line asks for; `results` takes what it shows.
int run_session(CommandLine& line, const Surroundings& surroundings, Reporter& reporter, Results& results) {
  if (line.addin.empty()) line.addin = default_component();
  refuse_wrong_settings();
  const auto trace = open_for("--trace", line.trace, surroundings.out);
  if (trace) line.session.gate.trace = &trace->stream();
  const auto base = knowledge_base(line.kb);
  try {
    if (!line.no_addin) line.session.make_addin = surroundings.load(line.addin);
    const int status = Run(line, surroundings, reporter, results).to_its_end(base);
    return finish(trace.get(), "--trace", status, reporter);
  } catch (const automation::Failure& failure) {
    tell_not_loaded(line.addin, failure, reporter);
    return Status::not_loaded;
  }
}

int run_told(CommandLine& line, const Surroundings& surroundings, Reporter& reporter, Results& results) {
  try {
    return run_session(line, surroundings, reporter, results);
  } catch (const WrongUse& wrong) {
    reporter.tell(wrong);
    return Status::wrong_use;
  }
}

int run(Words words, const Surroundings& surroundings, Reporter& reporter) {
  try {
    if (const auto help = help_asked_for(words, surroundings)) {
      surroundings.out << *help;
      return Status::all_well;
    }
    CommandLine line;
    parse(words, surroundings.commands, line);
    if (line.help || line.version) {
      surroundings.out << (line.help ? help_text(surroundings) : full_version() + "\n");
      return Status::all_well;
    }
    refuse_lost_files(line);
    const auto json = open_for("--json", line.json, surroundings.out);
    Results results{line.json == standard_file, nlohmann::ordered_json::array(), {}};
    const int status = run_told(line, surroundings, reporter, results);
    if (json) json->stream() << json_of(results, status, reporter) << '\n';
    return finish(json.get(), "--json", status, reporter);
  } catch (const WrongUse& wrong) {
    reporter.tell(wrong);
    return Status::wrong_use;
  }
}

int run_alone(const SubCommand& command, Words words, const Surroundings& surroundings, Reporter& reporter) {
  const auto asks_for_help = [](const std::string& word) { return word == "--help" || word == "-h"; };
  try {
    if (std::ranges::none_of(words, asks_for_help)) refuse_wrong_settings();
    return command.run({words.begin(), words.end()}, surroundings);
  } catch (const WrongUse& wrong) {
    reporter.tell(WrongUse(std::string(command.name) + ": " + wrong.what(), wrong.hint));
    return Status::wrong_use;
  }
}

/// `status`, or 2 and a message where results were lost on their way out. A reader that has seen enough, such
/// as head, loses nothing.
int finish_output(int status, const Surroundings& surroundings, Reporter& reporter) {
  if (surroundings.out.flush() || output_has_no_reader()) return status;
  reporter.tell(
      WrongUse("standard output couldn't be written to its end", "check where it goes and the space there"));
  return Status::wrong_use;
}

}  // namespace

std::string default_component() {
  if (component_beside.empty()) return {};
  return platform::native_path(platform::component_folder() + "\\" + std::string(component_beside));
}

int run_command_line(const std::vector<std::string>& args, const Surroundings& surroundings) {
  Reporter reporter(surroundings.err, surroundings.err_is_terminal);
  const auto command = std::ranges::find_if(surroundings.commands, [&](const SubCommand& each) {
    return !args.empty() && args.front() == each.name;
  });
  const int status = command == surroundings.commands.end()
                         ? run(args, surroundings, reporter)
                         : run_alone(*command, Words(args).subspan(1), surroundings, reporter);
  return finish_output(status, surroundings, reporter);
}

}  // namespace deskhost
