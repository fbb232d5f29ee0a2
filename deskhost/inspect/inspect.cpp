#include "deskhost/inspect/inspect.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <ostream>

#include "deskhost/console/help.h"
#include "deskhost/console/output.h"
#include "deskhost/console/reporter.h"
#include "deskhost/document/document_file.h"
#include "deskhost/inspect/examine.h"
#include "deskhost/inspect/html.h"
#include "deskhost/inspect/json.h"
#include "deskhost/inspect/text.h"
#include "deskhost/knowledgebase/base.h"
#include "deskhost/session/session.h"
#include "deskhost/system/file_path.h"
#include "deskhost/system/program.h"
#include "platform/component_runtime.h"
#include "platform/files.h"

namespace deskhost::inspect {
namespace {

enum Status { nothing_bad = 0, something_bad = 1, wrong_use = 2, not_loaded = 3 };

using Text = const std::string&;

struct CommandLine {
  Options options;
  std::string json, html;
  bool is_strict = false;
  bool help = false;  ///< asked for: nothing else is to be done
};

using Row = OptionRow<CommandLine>;
constexpr std::array rows{
    Row{{"--exchange", "FILE", "the knowledge-base exchange file beside it; default: none"},
        [](CommandLine& line, Text file) { line.options.exchange_file = file; }},
    Row{{"--kb", "SOURCE", "knowledge base to copy, a file or an ODBC string; default: an empty one"},
        [](CommandLine& line, Text source) { line.options.knowledge_base = source; }},
    Row{{"--settings", "FILE", "a QVEsprit.cfg; default: the one beside the component"},
        [](CommandLine& line, Text file) { line.options.settings = file; }},
    Row{{"--models", "FOLDER", "the folder of the STL models; default: none"},
        [](CommandLine& line, Text folder) { line.options.models = folder; }},
    Row{{"--json", "FILE", "write the report as JSON; - is standard output"},
        [](CommandLine& line, Text file) { line.json = file; }},
    Row{{"--html", "FILE", "write the report as a page to read and print; - is standard output"},
        [](CommandLine& line, Text file) { line.html = file; }},
    Row{{"--strict", nullptr, "a warning counts like an error"},
        [](CommandLine& line, Text) { line.is_strict = true; }},
    Row{{"--addin", "FILE", "the component to load; default: the one beside deskhost"},
        [](CommandLine& line, Text file) { line.options.component = file; }},
    Row{{"--help", nullptr, "show this"}, [](CommandLine& line, Text) { line.help = true; }},
};

CommandLine parse(Words words) {
  constexpr const char* usage = "see deskhost inspect --help";
  CommandLine line;
  const std::vector<std::string> files = take_options(line, rows, words, OptionsStand::anywhere, usage);
  if (line.help) return line;
  if (files.empty()) throw WrongUse("a tool export file is missing", usage);
  if (files.size() > 2) throw WrongUse("\"" + files[2] + "\" is too much", usage);
  if (std::ranges::find(files, "") != files.end()) throw WrongUse("the name of a file is empty", usage);
  line.options.file = files[0];
  if (files.size() == 2) line.options.document = files[1];
  if (line.options.component.empty()) {
    line.options.component = platform::native_path(platform::component_folder() + "\\libQVEsprit.so");
  }
  return line;
}

/// Throws WrongUse where a report would be written over something else, or standard input be read twice.
void refuse_what_collides(const CommandLine& line) {
  const Options& o = line.options;
  const std::vector<NamedFile> read{{"the tool export file", o.file}, {"the document", o.document},
                                    {"--exchange", o.exchange_file},  {"--kb", o.knowledge_base},
                                    {"--settings", o.settings},       {"--addin", o.component}};
  const NamedFile json{"--json", line.json};
  const NamedFile html{"--html", line.html};
  for (const NamedFile& output : {json, html}) refuse_lost_file(output, read);
  refuse_lost_file(html, {json});
  if (line.json == standard_file && line.html == standard_file)
    throw WrongUse("--json and --html go to standard output both", "give one of them a file");
  if (std::ranges::count(read, standard_file, &NamedFile::file) > 1)
    throw WrongUse("standard input can be read once only", "give a file in place of one \"-\"");
}

void write_report(const Report& report, const CommandLine& line, std::ostream& out) {
  const auto write = [&](const char* option, const std::string& file,
                         std::string (*bytes_of)(const Report&)) {
    if (file.empty()) return;
    try {
      write_output(file, out, [&](std::ostream& output) { output << bytes_of(report); });
    } catch (const WrongUse& wrong) {
      throw WrongUse(std::string(option) + ": " + wrong.what(), wrong.hint);
    }
  };
  write("--html", line.html, html_of);
  write("--json", line.json, json_of);
  if (line.json != standard_file && line.html != standard_file)
    write_text(report, results_want_colour(), out);
}

int status_of(const Report& report, bool is_strict) {
  const bool is_bad = report.count(Severity::error) > 0 || (is_strict && report.count(Severity::warning) > 0);
  return is_bad ? something_bad : nothing_bad;
}

int run(const std::vector<std::string>& args, const Surroundings& surroundings) {
  const CommandLine line = parse(args);
  if (line.help) {
    surroundings.out << help_on(sub_command());
    return nothing_bad;
  }
  refuse_what_collides(line);
  const Report report = examine(line.options, surroundings.load);
  write_report(report, line, surroundings.out);
  return status_of(report, line.is_strict);
}

int run_inspect(const std::vector<std::string>& args, const Surroundings& surroundings) {
  Reporter reporter(surroundings.err, surroundings.err_is_terminal);
  constexpr const char* trial_hint = "look at what it names, and at the space for temporary files";
  const auto refuse = [&](const std::string& what, const std::string& hint, int status) {
    reporter.tell(WrongUse("inspect: " + what, hint));
    return status;
  };
  try {
    return run(args, surroundings);
  } catch (const WrongUse& wrong) {
    return refuse(wrong.what(), wrong.hint, wrong_use);
  } catch (const DocumentFileError& error) {
    return refuse(error.what(), error.hint, wrong_use);
  } catch (const NotLoaded& failure) {
    return refuse(std::string("the component can't be loaded: ") + failure.what(),
                  "give another one with --addin FILE", not_loaded);
  } catch (const std::filesystem::filesystem_error& error) {
    return refuse("\"" + deskhost::name_of(error.path1()) + "\": " + error.code().message(), trial_hint,
                  wrong_use);
  } catch (const automation::Failure& failure) {
    return refuse(failure.what(), trial_hint, wrong_use);
  }
}

}  // namespace

SubCommand sub_command() {
  return {"inspect", "[OPTION...] FILE [DOCUMENT]",
          "tell what an import would do; nothing of yours is written", options_of(rows), run_inspect};
}

}  // namespace deskhost::inspect
