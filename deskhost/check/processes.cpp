#include "deskhost/check/processes.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <deque>
#include <exception>
#include <fstream>
#include <list>
#include <sstream>

#include "automation/failure.h"
#include "deskhost/check/sitting.h"
#include "deskhost/system/fork_posix.h"

namespace deskhost::check {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t at_once = 2;
/// For one check, and for a set's beginning.
constexpr auto time_limit = std::chrono::seconds(60);
constexpr std::size_t shown_of_output = 600;
constexpr std::size_t nowhere = SIZE_MAX;

/// The child's way of telling: a line each, "at N", "found N TEXT", "count N", "refused SINGLE LASTING".
void say(int pipe, const std::string& line) {
  std::string text = line;
  std::ranges::replace(text, '\n', ' ');
  text += '\n';
  for (std::string_view rest = text; !rest.empty();) {
    const ssize_t written = write(pipe, rest.data(), rest.size());
    if (written <= 0) _exit(3);
    rest.remove_prefix(static_cast<std::size_t>(written));
  }
}

void run_checks(Runner& runner, const Batch& batch, int pipe) {
  const std::size_t end = std::min(batch.end, runner.count());  // a user may ask for more
  for (std::size_t index = batch.first; index < end; ++index) {
    say(pipe, "at " + std::to_string(index));
    Report report;
    runner.run(index, report);
    for (const std::string& text : report.findings) say(pipe, "found " + std::to_string(index) + " " + text);
    say(pipe, "refused " + std::to_string(report.single) + " " + std::to_string(report.lasting));
  }
}

[[noreturn]] void be_child(const Batch& batch, const Place& place, int pipe) {
  keep_standard_error(place.folder.string() + ".err");
  try {
    const std::unique_ptr<Runner> runner = batch.set->begin(place);
    if (batch.end == 0) say(pipe, "count " + std::to_string(runner->count()));
    run_checks(*runner, batch, pipe);
  } catch (const std::exception& error) {
    say(pipe, std::string("ended ") + error.what());
  }
  std::error_code ignored;
  std::filesystem::remove_all(place.folder, ignored);
  say(pipe, "done");
  _exit(0);
}

struct Child {
  Batch batch;
  Place place;
  pid_t process = 0;
  int pipe = -1;
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
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw automation::Failure("no pipe for a check can be made");
    child.process = fork_program();
    if (child.process == 0) be_child(child.batch, child.place, ends[1]);
    close(ends[1]);
    child.pipe = ends[0];
    child.deadline = Clock::now() + time_limit;
  }

  void hear() {
    std::vector<pollfd> pipes;
    for (const Child& child : children_) pipes.push_back({child.pipe, POLLIN, 0});
    constexpr int quarter_second = 250;
    poll(pipes.data(), pipes.size(), quarter_second);
    auto pipe = pipes.begin();
    for (auto child = children_.begin(); child != children_.end();) {
      const bool ready = (pipe++)->revents != 0;
      const bool over = ready ? !read_from(*child) : is_late(*child);
      if (over) end(*child);
      child = over ? children_.erase(child) : std::next(child);
    }
  }

  bool read_from(Child& child) {
    char buffer[4096];
    const ssize_t size = read(child.pipe, buffer, sizeof buffer);
    if (size <= 0) return false;
    child.text.append(buffer, static_cast<std::size_t>(size));
    for (std::size_t end = 0; (end = child.text.find('\n')) != std::string::npos;) {
      take(child, child.text.substr(0, end));
      child.text.erase(0, end + 1);
    }
    return true;
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

  bool is_late(Child& child) {
    if (Clock::now() < child.deadline) return false;
    child.timed_out = true;
    return true;
  }

  void add_finding(const Child& child, const std::string& text) {
    const std::size_t at = child.at == nowhere ? child.batch.first : child.at;
    results_.findings.push_back({child.batch.set->name, at, at + 1, text});
  }

  // Ends with the child's whole group: a program that it started may hang too.
  void end(Child& child) {
    if (child.timed_out) kill(-child.process, SIGKILL);
    close(child.pipe);
    int status = 0;
    waitpid(child.process, &status, 0);
    forked_program_ended(child.process);
    const std::string output_file = child.place.folder.string() + ".err";
    if (!child.done) {
      add_finding(child, how_it_ended(child, status) + output_of(output_file));
      if (child.at != nowhere && child.at + 1 < child.batch.end) {
        waiting_.push_front({child.batch.set, child.at + 1, child.batch.end});
      }
    }
    std::error_code ignored;
    std::filesystem::remove_all(child.place.folder, ignored);
    std::filesystem::remove(output_file, ignored);
  }

  static std::string how_it_ended(const Child& child, int status) {
    if (child.timed_out) return "hangs";
    if (WIFSIGNALED(status)) return std::string("crashes: ") + strsignal(WTERMSIG(status));
    return "ends the host's process with status " + std::to_string(WEXITSTATUS(status));
  }

  static std::string output_of(const std::string& file) {
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
