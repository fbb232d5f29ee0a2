#include "deskhost/check/check.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <iomanip>
#include <iterator>
#include <map>
#include <memory>
#include <sstream>

#include "automation/failure.h"
#include "deskhost/check/report.h"
#include "deskhost/check/shop.h"
#include "deskhost/console/help.h"
#include "deskhost/console/output.h"
#include "deskhost/console/reporter.h"
#include "deskhost/system/file_path.h"
#include "deskhost/system/leftover.h"
#include "deskhost/system/program.h"
#include "deskhost/system/registered_class.h"

namespace deskhost::check {
namespace {

namespace fs = std::filesystem;

enum Status { nothing_found = 0, something_found = 1, wrong_use = 2, not_loaded = 3 };

constexpr int highest_strictness = 10;
constexpr std::size_t kinds_shown = 40;

constexpr std::array<Level, highest_strictness> levels{{
    {1, "loads and connects", connection_sets},
    {2, "every command with and without a document", command_sets},
    {3, "connect and disconnect a hundred times", reconnection_sets},
    {4, "each host call of an import refused once", import_refusal_sets},
    {5, "each host call of everything else refused once", other_refusal_sets},
    {6, "the same, and every call behind it", lasting_refusal_sets},
    {7, "files and programs that fail", file_fault_sets},
    {8, "events in the middle of calls, documents closed in a command", intrusion_sets},
    {9, "random actions", random_action_sets},
    {10, "random bytes in every file", random_byte_sets},
}};

struct Options {
  int strictness = 5;
  std::uint64_t seed = 1;
  std::string component;
  std::string only;
  std::string json, junit;
  bool help = false;
};

using Row = OptionRow<Options>;
using Text = const std::string&;

constexpr std::array rows{
    Row{{"--strictness", "1..10", "run the levels up to this one; default: 5"},
        [](Options& o, Text text) {
          o.strictness = whole_number<int>(text, 1);
          if (o.strictness > highest_strictness) throw WrongUse("there is no level " + text, "give 1 to 10");
        }},
    Row{{"--seed", "N", "of everything random; default: 1"},
        [](Options& o, Text text) { o.seed = whole_number<std::uint64_t>(text, 0); }},
    Row{{"--component", "FILE",
         "the component to check; default: the one beside it, or on Windows registered"},
        [](Options& o, Text file) { o.component = file; }},
    Row{{"--only", "SET:N[-M]", "run one check, or a stretch of them, as a finding names it"},
        [](Options& o, Text checks) { o.only = checks; }},
    Row{{"--json", "FILE", "write the results as JSON; - is standard output, in place of text"},
        [](Options& o, Text file) { o.json = file; }},
    Row{{"--junit", "FILE", "write the results as JUnit XML, for a server that builds and tests"},
        [](Options& o, Text file) { o.junit = file; }},
    Row{{"--help", nullptr, "show this"}, [](Options& o, Text) { o.help = true; }},
};

std::vector<Set> all_sets() {
  std::vector<Set> all;
  for (const Level& level : levels) std::ranges::move(level.sets(), std::back_inserter(all));
  return all;
}

// What findings of one kind have in common: their text without what was refused.
std::string kind_of(const Finding& finding) {
  std::string text = finding.set + finding.text.substr(0, finding.text.find(" (refused:"));
  std::erase_if(text, [](char c) { return c >= '0' && c <= '9'; });
  return text;
}

void print_findings(const std::vector<Finding>& findings, const Options& options, std::ostream& out) {
  std::map<std::string, std::vector<const Finding*>> kinds;
  for (const Finding& finding : findings) kinds[kind_of(finding)].push_back(&finding);
  std::size_t shown = 0;
  for (const auto& [kind, alike] : kinds) {
    if (++shown > kinds_shown) break;
    const Finding& first = *alike.front();
    out << "  finding: " << checks_of(first) << ": " << first.text;
    if (alike.size() > 1) out << " [and " << alike.size() - 1 << " like it]";
    out << "\n  repeat: deskhost check --seed " << options.seed;
    if (!options.component.empty()) out << " --component " << options.component;
    out << " --only " << checks_of(first) << '\n';
  }
  if (kinds.size() > kinds_shown)
    out << "  and findings of " << kinds.size() - kinds_shown << " more kinds\n";
}

void print_level(const Level& level, const Results& results, double seconds, std::ostream& out) {
  out << "level " << std::setw(2) << level.strictness << "  " << level.title << ": " << results.counts.checks
      << " checks";
  if (results.counts.single > 0) out << ", " << results.counts.single << " single refusals";
  if (results.counts.lasting > 0) out << ", " << results.counts.lasting << " lasting refusals";
  out << ", " << results.findings.size() << " findings, " << std::fixed << std::setprecision(1) << seconds
      << " s\n";
}

LevelResult run_level(const Level& level, const Options& options, const Place& place, std::ostream& out) {
  const auto start = std::chrono::steady_clock::now();
  const std::vector<Set> sets = level.sets();
  Results results = run_in_processes(sets, {}, place);
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
  print_level(level, results, time.count(), out);
  print_findings(results.findings, options, out);
  out << std::flush;
  return {level.strictness, level.title, std::move(results), time.count()};
}

std::size_t number_in(const std::string& text) {
  if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos || text.size() > 9) {
    throw WrongUse("--only: \"" + text + "\" is no number", "give SET:N or SET:N-M, as a finding names it");
  }
  return std::stoul(text);
}

std::vector<LevelResult> run_only(const Options& options, const Place& place, std::ostream& out) {
  const std::size_t colon = options.only.rfind(':');
  const std::string name = options.only.substr(0, colon);
  const std::string range = colon == std::string::npos ? "" : options.only.substr(colon + 1);
  const std::size_t dash = std::min(range.find('-'), range.size());
  const std::size_t first = number_in(range.substr(0, dash));
  const std::size_t last = dash == range.size() ? first : number_in(range.substr(dash + 1));
  for (const Level& level : levels) {
    for (const Set& set : level.sets()) {
      if (set.name != name) continue;
      Results results = run_in_processes({}, Batch{&set, first, last + 1}, place);
      print_findings(results.findings, options, out);
      out << results.counts.checks << " checks, " << results.findings.size() << " findings\n";
      return {{level.strictness, options.only, std::move(results), 0}};
    }
  }
  throw WrongUse("--only: there are no checks \"" + name + "\"", "give SET:N, as a finding names it");
}

std::vector<LevelResult> run_levels(const Options& options, const Place& place, std::ostream& out) {
  std::vector<LevelResult> results;
  for (const Level& level : levels) {
    if (level.strictness <= options.strictness) results.push_back(run_level(level, options, place, out));
  }
  const std::size_t findings = findings_in(results);
  out << "seed " << options.seed << ": "
      << (findings == 0 ? "nothing found" : std::to_string(findings) + " findings") << '\n';
  return results;
}

Place place_of(const Options& options, const Load& load) {
  Place place{{}, path_of(options.component), options.component.empty(), options.seed, load};
  if (place.is_registered) {
    const auto registered = registered_file(connect_class);
    if (!registered)
      throw automation::Failure(std::string(connect_class) +
                                " isn't registered; name its file with --component");
    place.component = *registered;
  }
  if (!fs::exists(place.component)) throw automation::Failure(automation::Error::file_not_found);
  return place;
}

int run_told(const Options& options, const Surroundings& surroundings) {
  Place place = place_of(options, surroundings.load);
  // they are opened first: an hour of checks isn't to end in a file that can't be written
  const auto open = [&](const std::string& file) {
    return file.empty() ? nullptr : std::make_unique<Output>(file, surroundings.out);
  };
  const auto json = open(options.json);
  const auto junit = open(options.junit);
  std::ostringstream nowhere;
  std::ostream& out =
      options.json == standard_file || options.junit == standard_file ? nowhere : surroundings.out;
  const Leftover folder([] { return make_folder_in_memory("deskhost-check"); });
  place.folder = folder.path();
  const auto results = options.only.empty() ? run_levels(options, place, out) : run_only(options, place, out);
  if (json) write_json(results, options.seed, json->stream());
  if (junit) write_junit(results, junit->stream());
  for (Output* const file : {json.get(), junit.get()}) {
    if (file != nullptr) file->finish();
  }
  return findings_in(results) == 0 ? nothing_found : something_found;
}

int run_check(const std::vector<std::string>& args, const Surroundings& surroundings) {
  Reporter reporter(surroundings.err, surroundings.err_is_terminal);
  Options options;
  try {
    Words words = args;
    if (do_batch_told(args, all_sets(), surroundings.load, surroundings.out)) return nothing_found;
    take_options(options, rows, words);
    if (options.help) {
      surroundings.out << help_on(sub_command());
      return nothing_found;
    }
    if (!words.empty()) throw WrongUse("\"" + words.front() + "\" is no option", "see deskhost check --help");
    if (options.component.empty()) options.component = default_component();
    return run_told(options, surroundings);
  } catch (const WrongUse& wrong) {
    reporter.tell(WrongUse(std::string("check: ") + wrong.what(), wrong.hint));
    return wrong_use;
  } catch (const automation::Failure& failure) {
    const std::string which =
        options.component.empty() ? "the registered component" : "\"" + options.component + "\"";
    reporter.tell("deskhost", "check: " + which + ": " + failure.what());
    return not_loaded;
  }
}

}  // namespace

SubCommand sub_command() {
  return {"check", "[OPTION...]", "try to break the component, each check in a process of its own",
          options_of(rows), run_check};
}

}  // namespace deskhost::check
