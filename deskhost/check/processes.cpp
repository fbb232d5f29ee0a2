#include "deskhost/check/processes.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <deque>
#include <exception>
#include <fstream>
#include <list>
#include <sstream>

#include "deskhost/check/sitting.h"
#include "deskhost/system/file_path.h"
#include "deskhost/system/part_process.h"

namespace deskhost::check {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t at_once = 2;
/// For one check, and for a set's beginning, on a machine that has much else to do.
constexpr auto time_limit = std::chrono::minutes(3);
constexpr std::size_t shown_of_output = 600;
constexpr std::size_t nowhere = SIZE_MAX;

/// In front of the arguments of a process that does a batch: the set, first and end, folder, component,
/// whether that is registered, seed.
constexpr const char* batch_word = "--batch";

std::filesystem::path errors_of(const Place& place) {
  std::filesystem::path file = place.folder;
  return file += ".err";
}

/// A line each: "at N", "found N TEXT", "count N", "refused SINGLE LASTING".
void say_line(const Say& say, std::string line) {
  std::ranges::replace(line, '\n', ' ');
  say(line + '\n');
}

void run_checks(Runner& runner, const Batch& batch, const Say& say) {
  const std::size_t end = std::min(batch.end, runner.count());  // a user may ask for more
  for (std::size_t index = batch.first; index < end; ++index) {
    say_line(say, "at " + std::to_string(index));
    Report report;
    runner.run(index, report);
    for (const std::string& text : report.findings)
      say_line(say, "found " + std::to_string(index) + " " + text);
    say_line(say, "refused " + std::to_string(report.single) + " " + std::to_string(report.lasting));
  }
}

void do_batch(const Batch& batch, const Place& place, const Say& say) {
  read_standard_error_from(errors_of(place));
  try {
    const std::unique_ptr<Runner> runner = batch.set->begin(place);
    if (batch.end == 0) say_line(say, "count " + std::to_string(runner->count()));
    run_checks(*runner, batch, say);
  } catch (const std::exception& error) {
    say_line(say, std::string("ended ") + error.what());
  }
  std::error_code ignored;
  std::filesystem::remove_all(place.folder, ignored);
  say_line(say, "done");
}

std::vector<std::string> arguments_for(const Batch& batch, const Place& place) {
  return {"check",
          batch_word,
          batch.set->name,
          std::to_string(batch.first),
          std::to_string(batch.end),
          name_of(place.folder),
          name_of(place.component),
          place.is_registered ? "registered" : "",
          std::to_string(place.seed)};
}

struct Child {
  Batch batch;
  Place place;
  std::unique_ptr<PartProcess> process;
  std::string text;
  Clock::time_point deadline;
  std::size_t at = nowhere;
  bool done = false, timed_out = false;
};

class Pool {
 public:
  Pool(const Place& place, Results& results) : place_(place), results_(results) {}

  void add(const Batch& batch) { waiting_.push_back(batch); }
  /// What a set counts, by its name.
  std::map<std::string, std::size_t> counted;

  void run() {
    while (!waiting_.empty() || !children_.empty()) {
      while (!waiting_.empty() && children_.size() < at_once) start();
      hear();
    }
  }

 private:
  void start() {
    Child& child = children_.emplace_back();
    child.batch = waiting_.front();
    waiting_.pop_front();
    child.place = place_;
    child.place.folder /= std::to_string(++started_);
    std::filesystem::create_directory(child.place.folder);
    child.process =
        std::make_unique<PartProcess>([&](const Say& say) { do_batch(child.batch, child.place, say); },
                                      arguments_for(child.batch, child.place), errors_of(child.place));
    child.deadline = Clock::now() + time_limit;
  }

  void hear() {
    std::vector<const PartProcess*> processes;
    for (const Child& child : children_) processes.push_back(child.process.get());
    PartProcess::wait_for_any(processes, std::chrono::milliseconds(250));
    for (auto child = children_.begin(); child != children_.end();) {
      const bool over = is_over(*child);
      if (over) end(*child);
      child = over ? children_.erase(child) : std::next(child);
    }
  }

  bool is_over(Child& child) {
    const std::optional<std::string> heard = child.process->hear();
    if (!heard) return true;
    child.text += *heard;
    for (std::size_t end = 0; (end = child.text.find('\n')) != std::string::npos;) {
      take(child, child.text.substr(0, end));
      child.text.erase(0, end + 1);
    }
    child.timed_out = Clock::now() >= child.deadline;
    return child.timed_out;
  }

  void take(Child& child, const std::string& line) {
    child.deadline = Clock::now() + time_limit;
    std::istringstream words(line);
    std::string word;
    words >> word;
    if (word == "at") {
      words >> child.at;
      ++results_.counts.checks;
    } else if (word == "found") {
      std::size_t index = 0;
      words >> index;
      std::string text;
      std::getline(words >> std::ws, text);
      results_.findings.push_back({child.batch.set->name, index, index + 1, text});
    } else if (word == "refused") {
      std::uint64_t single = 0, lasting = 0;
      words >> single >> lasting;
      results_.counts.single += single;
      results_.counts.lasting += lasting;
    } else if (word == "count") {
      words >> counted[child.batch.set->name];
    } else if (word == "ended") {
      add_finding(child, "the check can't go on: " + line.substr(6));
    } else if (word == "done") {
      child.done = true;
    }
  }

  void add_finding(const Child& child, const std::string& text) {
    const std::size_t at = child.at == nowhere ? child.batch.first : child.at;
    results_.findings.push_back({child.batch.set->name, at, at + 1, text});
  }

  // Ends with all that the child started: a program may hang too.
  void end(Child& child) {
    if (child.timed_out) child.process->kill();
    const std::string how = child.process->end();
    const std::filesystem::path output_file = errors_of(child.place);
    if (!child.done) {
      add_finding(child, (child.timed_out ? "hangs" : how) + output_of(output_file));
      if (child.at != nowhere && child.at + 1 < child.batch.end) {
        waiting_.push_front({child.batch.set, child.at + 1, child.batch.end});
      }
    }
    std::error_code ignored;
    std::filesystem::remove_all(child.place.folder, ignored);
    std::filesystem::remove(output_file, ignored);
  }

  static std::string output_of(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(in), {}};
    const std::size_t sanitizer = text.find("ERROR: ");
    if (sanitizer != std::string::npos) {
      text = text.substr(sanitizer, shown_of_output);
    } else if (text.size() > shown_of_output) {
      text.erase(0, text.size() - shown_of_output);
    }
    std::ranges::replace(text, '\n', ' ');
    return text.empty() ? "" : " | " + text;
  }

  Place place_;
  Results& results_;
  std::deque<Batch> waiting_;
  std::list<Child> children_;
  int started_ = 0;
};

}  // namespace

bool do_batch_told(const std::vector<std::string>& arguments, const std::vector<Set>& sets, const Load& load,
                   std::ostream& out) {
  constexpr std::size_t count = 8;
  if (arguments.size() != count || arguments[0] != batch_word) return false;
  const auto set = std::ranges::find(sets, arguments[1], &Set::name);
  if (set == sets.end()) return false;
  const Batch batch{&*set, std::strtoul(arguments[2].c_str(), nullptr, 10),
                    std::strtoul(arguments[3].c_str(), nullptr, 10)};
  const Place place{path_of(arguments[4]), path_of(arguments[5]), !arguments[6].empty(),
                    std::strtoull(arguments[7].c_str(), nullptr, 10), load};
  do_batch(batch, place, [&](std::string_view text) { out << text << std::flush; });
  return true;
}

Results run_in_processes(const std::vector<Set>& sets, const std::optional<Batch>& only, const Place& place) {
  Results results;
  Pool pool(place, results);
  if (only) {
    pool.add(*only);
    pool.run();
    return results;
  }
  for (const Set& set : sets) pool.add({&set, 0, 0});
  pool.run();
  for (const Set& set : sets) {
    const std::size_t count = pool.counted[set.name];
    for (std::size_t first = 0; first < count; first += set.batch) {
      pool.add({&set, first, std::min(first + set.batch, count)});
    }
  }
  pool.run();
  return results;
}

}  // namespace deskhost::check
