#include "deskhost/inspect/inspect.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <optional>
#include <ostream>

#include "deskhost/console/help.h"
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
    Row{{"--kb", "SOURCE", "knowledge base, a file or an ODBC string, that is copied; default: an empty one"},
        [](CommandLine& line, Text source) { line.options.knowledge_base = source; }},
    Row{{"--settings", "FILE", "a QVEsprit.cfg; default: the one beside the component"},
        [](CommandLine& line, Text file) { line.options.settings = file; }},
    Row{{"--models", "FOLDER", "the folder of the STL models; default: none"},
        [](CommandLine& line, Text folder) { line.options.models = folder; }},
    Row{{"--json", "FILE", "write the report as JSON; - is standard output"},
        [](CommandLine& line, Text file) { line.json = file; }},
    Row{{"--html", "FILE", "write the report as a page to read and print"},
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
  std::vector<std::string> files;
  for (take_options(line, rows, words); !words.empty(); take_options(line, rows, words)) {
    files.push_back(words.front());
    words = words.subspan(1);
  }
  if (line.help) return line;
  if (files.empty()) throw WrongUse("a tool export file is missing", usage);
  if (files.size() > 2) throw WrongUse("\"" + files[2] + "\" is too much", usage);
  line.options.file = files[0];
  if (files.size() == 2) line.options.document = files[1];
  if (line.options.component.empty()) {
    line.options.component = platform::native_path(platform::component_folder() + "\\libQVEsprit.so");
  }
  return line;
}

/// Throws WrongUse where a report would be written over something that is read.
void refuse_lost_files(const CommandLine& line) {
  const Options& o = line.options;
  const std::array read{o.file, o.document, o.exchange_file, o.knowledge_base, o.settings, o.component};
  for (const std::string& output : {line.json, line.html}) {
    std::error_code ignored;
    const auto is_output = [&](const std::string& other) {
      return !other.empty() && std::filesystem::equivalent(path_of(output), path_of(other), ignored);
    };
    if (output.empty() || output == "-") continue;
    if (std::ranges::none_of(read, is_output)) continue;
    throw WrongUse("\"" + output + "\" would be lost: the report would be written over it",
                   "give another file");
  }
  if (!line.json.empty() && line.json == line.html) {
    throw WrongUse("--json and --html name the same file \"" + line.json + "\"", "give two files");
  }
}

void write_file(const std::string& file, const std::string& bytes) {
  std::ofstream out(path_of(file), std::ios::binary);
  if (!(out << bytes).flush()) {
    throw WrongUse("\"" + file + "\" can't be written", "give a file in a folder that exists");
  }
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
  refuse_lost_files(line);
  const Report report = examine(line.options, surroundings.load);
  if (!line.html.empty()) write_file(line.html, html_of(report));
  if (line.json == "-") {
    surroundings.out << json_of(report);
  } else {
    if (!line.json.empty()) write_file(line.json, json_of(report));
    write_text(report, results_want_colour(), surroundings.out);
  }
  return status_of(report, line.is_strict);
}

int run_inspect(const std::vector<std::string>& args, const Surroundings& surroundings) {
  Reporter reporter(surroundings.err, surroundings.err_is_terminal);
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
                  "give it with --addin FILE", not_loaded);
  } catch (const automation::Failure& failure) {
    return refuse(failure.what(), "look at the files that were given, and the space for temporary ones",
                  wrong_use);
  }
}

}  // namespace

SubCommand sub_command() {
  return {"inspect", "[OPTION...] FILE [DOCUMENT]",
          "tell what an import would do; nothing of yours is written", options_of(rows), run_inspect};
}

}  // namespace deskhost::inspect
