#include "deskhost/check/check.h"

#include <stdlib.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <array>
#include <chrono>
#include <iomanip>
#include <map>
#include <ostream>

#include "automation/failure.h"
#include "deskhost/check/processes.h"
#include "deskhost/session/session.h"
#include "platform/component_runtime.h"
#include "platform/files.h"

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
};

struct ParsedOptions {
  Options options;
  std::optional<int> status;  ///< where there is nothing left to do
};

ParsedOptions parse(std::vector<std::string> args, const Surroundings& surroundings) {
  ParsedOptions parsed;
  Options& o = parsed.options;
  CLI::App app("Tries to break a component, each check in a process of its own", "deskhost check");
  app.add_option("--strictness", o.strictness, "run the levels up to this one; default: 5")
      ->check(CLI::Range(1, highest_strictness))
      ->type_name("1..10");
  app.add_option("--seed", o.seed, "of everything random; default: 1")->type_name("N");
  app.add_option("--component", o.component, "the component to check; default: the one beside deskhost")
      ->type_name("FILE");
  app.add_option("--only", o.only, "run one check, or a stretch of them, as a finding names it")
      ->type_name("SET:N[-M]");
  std::ranges::reverse(args);
  try {
    app.parse(args);
  } catch (const CLI::CallForHelp&) {
    surroundings.out << app.help();
    parsed.status = nothing_found;
  } catch (const CLI::ParseError& error) {
    surroundings.err << "deskhost: check: " << error.what() << "\nhint: see deskhost check --help\n";
    parsed.status = wrong_use;
  }
  return parsed;
}

/// The folder of one run, in memory where the system has such a place; gone afterwards.
class RunFolder {
 public:
  RunFolder() {
    const bool in_memory = access("/dev/shm", W_OK | X_OK) == 0;
    std::string name =
        (in_memory ? fs::path("/dev/shm") : fs::temp_directory_path()) / "deskhost-check-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) throw automation::Failure("no folder can be made: " + name);
    path = name;
  }
  ~RunFolder() {
    std::error_code ignored;
    fs::remove_all(path, ignored);
  }
  RunFolder(const RunFolder&) = delete;
  RunFolder& operator=(const RunFolder&) = delete;
  fs::path path;
};

std::string checks_of(const Finding& finding) {
  std::string text = finding.set + ":" + std::to_string(finding.first);
  if (finding.end > finding.first + 1) text += "-" + std::to_string(finding.end - 1);
  return text;
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
    out << "\n  repeat: deskhost check --seed " << options.seed << " --component " << options.component
        << " --only " << checks_of(first) << '\n';
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

std::size_t run_level(const Level& level, const Options& options, const Place& place, std::ostream& out) {
  const auto start = std::chrono::steady_clock::now();
  const std::vector<Set> sets = level.sets();
  const Results results = run_in_processes(sets, {}, place);
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
  print_level(level, results, time.count(), out);
  print_findings(results.findings, options, out);
  out << std::flush;
  return results.findings.size();
}

std::size_t number_in(const std::string& text) {
  if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos || text.size() > 9) {
    throw WrongUse("--only: \"" + text + "\" is no number", "give SET:N or SET:N-M, as a finding names it");
  }
  return std::stoul(text);
}

int run_only(const Options& options, const Place& place, std::ostream& out) {
  const std::size_t colon = options.only.rfind(':');
  const std::string name = options.only.substr(0, colon);
  const std::string range = colon == std::string::npos ? "" : options.only.substr(colon + 1);
  const std::size_t dash = std::min(range.find('-'), range.size());
  const std::size_t first = number_in(range.substr(0, dash));
  const std::size_t last = dash == range.size() ? first : number_in(range.substr(dash + 1));
  for (const Level& level : levels) {
    for (const Set& set : level.sets()) {
      if (set.name != name) continue;
      const Results results = run_in_processes({}, Batch{&set, first, last + 1}, place);
      print_findings(results.findings, options, out);
      out << results.counts.checks << " checks, " << results.findings.size() << " findings\n";
      return results.findings.empty() ? nothing_found : something_found;
    }
  }
  throw WrongUse("--only: there are no checks \"" + name + "\"", "give SET:N, as a finding names it");
}

int run_levels(const Options& options, const Place& place, std::ostream& out) {
  std::size_t findings = 0;
  for (const Level& level : levels) {
    if (level.strictness <= options.strictness) findings += run_level(level, options, place, out);
  }
  out << "seed " << options.seed << ": "
      << (findings == 0 ? "nothing found" : std::to_string(findings) + " findings") << '\n';
  return findings == 0 ? nothing_found : something_found;
}

}  // namespace

int run_check(const std::vector<std::string>& args, const Surroundings& surroundings) {
  auto [options, status] = parse(args, surroundings);
  if (status) return *status;
  if (options.component.empty()) {
    options.component = platform::native_path(platform::component_folder() + "\\libQVEsprit.so");
  }
  try {
    if (!fs::exists(options.component)) throw automation::Failure(automation::Error::file_not_found);
    const RunFolder folder;
    const Place place{folder.path, options.component, options.seed, surroundings.load};
    return options.only.empty() ? run_levels(options, place, surroundings.out)
                                : run_only(options, place, surroundings.out);
  } catch (const WrongUse& wrong) {
    surroundings.err << "deskhost: check: " << wrong.what() << "\nhint: " << wrong.hint << '\n';
    return wrong_use;
  } catch (const automation::Failure& failure) {
    surroundings.err << "deskhost: check: \"" << options.component << "\": " << failure.what() << '\n';
    return not_loaded;
  }
}

}  // namespace deskhost::check
