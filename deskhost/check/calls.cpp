#include "deskhost/check/calls.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <set>

namespace deskhost::check {
namespace {

// The text between two marks, from `at` on; moves `at` behind it.
std::string between(std::string_view line, std::string_view begin, std::string_view end, std::size_t& at) {
  const std::size_t start = line.find(begin, at);
  if (start == line.npos) return {};
  const std::size_t first = start + begin.size();
  const std::size_t last = std::min(line.find(end, first), line.size());
  at = last;
  return std::string(line.substr(first, last - first));
}

// Which recordset it is depends on those before it.
std::string without_number(std::string name) {
  if (name.starts_with("Recordset(")) name.resize(9);
  return name;
}

Call call_of(std::string_view line) {
  Call call;
  std::size_t at = 0;
  call.op = between(line, "\"op\":\"", "\",\"on\":", at);
  call.on = without_number(between(line, "\"on\":\"", "\",\"member\":", at));
  call.member = between(line, "\"member\":\"", "\",\"args\":", at);
  call.args = between(line, "\"args\":", ",\"types\":", at);
  call.is_event = call.op == "event";
  call.refused = line.find(R"("error":"The host refuses the call"})", at) != line.npos;
  call.result_object = without_number(between(line, R"("result":{"object":")", "\"", at));
  call.statement = call.op + ' ' + call.on + ' ' + call.member;
  call.key = call.statement + ' ' + call.args;
  if (call.op == "get") call.statement = call.key;
  return call;
}

bool belongs_to(std::string_view name, std::string_view object) {
  return name.starts_with(object) && (name.size() == object.size() || name[object.size()] == '.');
}

/// The shortest way from one row of numbers to another, by steps of one missing or one extra.
class Way {
 public:
  Way(std::vector<int> clean, std::vector<int> other) : a_(std::move(clean)), b_(std::move(other)) {}

  Difference find() {
    const int most = static_cast<int>(a_.size() + b_.size());
    std::map<int, int> reach{{1, 0}};
    for (int d = 0; d <= most; ++d) {
      history_.push_back(reach);
      for (int k = -d; k <= d; k += 2) {
        int x = k == -d || (k != d && reach[k - 1] < reach[k + 1]) ? reach[k + 1] : reach[k - 1] + 1;
        while (same(x, x - k)) ++x;
        reach[k] = x;
        if (x >= size(a_) && x - k >= size(b_)) return back(d);
      }
    }
    return {};
  }

 private:
  static int size(const std::vector<int>& row) { return static_cast<int>(row.size()); }
  [[nodiscard]] bool same(int x, int y) const {
    return x < size(a_) && y < size(b_) && a_[static_cast<std::size_t>(x)] == b_[static_cast<std::size_t>(y)];
  }
  Difference back(int d) {
    Difference found;
    int x = size(a_), y = size(b_);
    for (; d > 0; --d) {
      std::map<int, int>& reach = history_[static_cast<std::size_t>(d)];
      const int k = x - y;
      const bool extra = k == -d || (k != d && reach[k - 1] < reach[k + 1]);
      const int before = extra ? k + 1 : k - 1;
      x = reach[before];
      y = x - before;
      (extra ? found.extra : found.missing).push_back(static_cast<std::size_t>(extra ? y : x));
    }
    return found;
  }

  std::vector<int> a_, b_;
  std::vector<std::map<int, int>> history_;
};

}  // namespace

std::string without_identifiers(std::string text) {
  constexpr std::size_t length = 32;
  std::size_t digits = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    digits = std::isxdigit(static_cast<unsigned char>(text[i])) != 0 ? digits + 1 : 0;
    if (digits == length)
      std::fill_n(text.begin() + static_cast<std::ptrdiff_t>(i + 1 - length), length, '0');
  }
  return text;
}

std::vector<Call> calls_of(std::string_view trace) {
  std::vector<Call> calls;
  while (!trace.empty()) {
    const std::size_t end = std::min(trace.find('\n'), trace.size() - 1);
    calls.push_back(call_of(trace.substr(0, end)));
    trace.remove_prefix(end + 1);
  }
  return calls;
}

Difference difference(const std::vector<Call>& clean, const std::vector<Call>& other, std::size_t from) {
  std::map<std::string_view, int> numbers;
  const auto numbered = [&](const std::vector<Call>& calls) {
    std::vector<int> row;
    for (std::size_t i = from; i < calls.size(); ++i) {
      row.push_back(numbers.emplace(calls[i].statement, static_cast<int>(numbers.size())).first->second);
    }
    return row;
  };
  std::vector<int> clean_row = numbered(clean);
  Difference found = Way(std::move(clean_row), numbered(other)).find();
  for (auto* places : {&found.missing, &found.extra}) {
    for (std::size_t& place : *places) place += from;
    std::ranges::sort(*places);
  }
  return found;
}

std::vector<bool> dependents(const std::vector<Call>& clean, std::size_t refused) {
  std::vector<bool> needs(clean.size(), false);
  std::set<std::string> lost;
  if (!clean[refused].result_object.empty()) lost.insert(clean[refused].result_object);
  bool in_statement = clean[refused].op == "get" || clean[refused].op == "create";
  for (std::size_t i = refused + 1; i < clean.size(); ++i) {
    const Call& call = clean[i];
    const bool uses_lost = std::ranges::any_of(lost, [&](const std::string& object) {
      return belongs_to(call.on, object) || call.args.find("{\"object\":\"" + object) != call.args.npos;
    });
    needs[i] = uses_lost || in_statement;
    if (in_statement && !call.is_event && call.op != "get") in_statement = false;
    if (call.result_object.empty()) continue;
    if (needs[i]) {
      lost.insert(call.result_object);
    } else {
      lost.erase(call.result_object);  // asked for anew, by a statement that runs
    }
  }
  return needs;
}

}  // namespace deskhost::check
