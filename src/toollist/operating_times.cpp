#include "toollist/operating_times.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "automation/number.h"
#include "foundation/failures.h"

namespace mQuorvexList {
namespace {

using automation::Value;

// Two values are equal where their keys are, and an empty one equals the number 0 and the empty text too.
const std::string key_of_empty = "e";
const std::string key_of_zero = "n0";
const std::string key_of_empty_text = "t";
// No value has these.
const std::string key_of_all = "*";
const std::string key_of_incomparable = "!";

/// Throws Failure for a value that can't be compared.
std::string key_of(const Value& value) {
  if (!equal(value, value)) return "nan";  // comparable, and equal to nothing
  if (value.is(Value::Kind::Empty)) return key_of_empty;
  if (const std::string* text = value.text()) return "t" + *text;
  return "n" + automation::shortest_text(value.to_double());
}

std::vector<std::string> keys_equal_to(const std::string& key) {
  if (key == key_of_empty) return {key_of_empty, key_of_zero, key_of_empty_text};
  if (key == key_of_zero || key == key_of_empty_text) return {key, key_of_empty};
  return {key};
}

}  // namespace

const std::vector<OperatingTimes::Operation>& OperatingTimes::operations() {
  if (!read_) read_operations();
  return operations_;
}

void OperatingTimes::read_operations() {
  const std::vector<host::Operation> walk = document_.Operations().all();
  read_ = true;
  for (const host::Operation& operation : walk) {
    Operation& seen = operations_.emplace_back();
    skip_failure([&] { seen.tool_id = operation.ToolSettings().Item("ToolID").Value(); });
    skip_failure([&] { seen.duration = operation.Duration(); });
    Positions* positions = &incomparable_;
    skip_failure([&] {
      if (seen.tool_id) positions = &by_key_[key_of(*seen.tool_id)];
    });
    positions->push_back(operations_.size() - 1);
  }
}

double OperatingTimes::of(const host::Tool& tool) {
  if (operations().empty()) return 0;
  std::string key = key_of_all;  // a tool whose own id can't be compared gets every duration
  skip_failure([&] { key = key_of(tool.ToolParameters().Item("ToolID").Value()); });
  if (key == key_of_all) {
    return kept(key, [&] {
      Positions all(operations_.size());
      std::iota(all.begin(), all.end(), std::size_t{0});
      return sum(all);
    });
  }
  return kept(key, [&] {
    Positions positions = positions_for(key);
    if (positions.empty()) return kept(key_of_incomparable, [&] { return sum(incomparable_); });
    positions.insert(positions.end(), incomparable_.begin(), incomparable_.end());
    std::ranges::sort(positions);
    return sum(positions);
  });
}

OperatingTimes::Positions OperatingTimes::positions_for(const std::string& key) const {
  Positions positions;
  if (key == "nan") return positions;
  for (const std::string& equal_key : keys_equal_to(key)) {
    const auto found = by_key_.find(equal_key);
    if (found == by_key_.end()) continue;
    positions.insert(positions.end(), found->second.begin(), found->second.end());
  }
  return positions;
}

double OperatingTimes::sum(const Positions& positions) const {
  double sum = 0;
  for (const std::size_t position : positions) {
    const double next = sum + operations_[position].duration.value_or(0);
    if (std::isfinite(next)) sum = next;  // an addition that overflows fails, and is passed over
  }
  return sum;
}

template <class SumOf>
double OperatingTimes::kept(const std::string& key, SumOf&& sum_of) {
  const auto found = sums_.find(key);
  if (found != sums_.end()) return found->second;
  const double sum = sum_of();
  sums_.emplace(key, sum);
  return sum;
}

}  // namespace mQuorvexList
