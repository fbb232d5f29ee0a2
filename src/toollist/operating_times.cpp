#include "toollist/operating_times.h"

#include <algorithm>
#include <cmath>
#include <iterator>
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

/// Both ascending, and so is what comes out; what is in both is in it once.
void merge_into(std::vector<std::size_t>& positions, const std::vector<std::size_t>& more) {
  std::vector<std::size_t> both;
  both.reserve(positions.size() + more.size());
  std::ranges::set_union(positions, more, std::back_inserter(both));
  positions = std::move(both);
}

}  // namespace

std::size_t OperatingTimes::count() {
  if (!taken_) {
    for (host::Operation& operation : document_.Operations().all()) {
      unread_.push_back(operations_.size());
      operations_.push_back({std::move(operation), {}, {}});
    }
    taken_ = true;
  }
  return operations_.size();
}

const Value* OperatingTimes::tool_id(std::size_t position) {
  Operation& operation = operations_[position];
  return operation.tool_id.get([&] { return operation.view.ToolSettings().Item("ToolID").Value(); });
}

void OperatingTimes::compare_unread() {
  std::erase_if(unread_, [&](std::size_t position) {
    const Value* id = tool_id(position);
    if (!operations_[position].tool_id.is_settled()) return false;
    Positions* positions = &incomparable_;
    skip_failure([&] {
      if (id) positions = &by_key_[key_of(*id)];
    });
    positions->insert(std::ranges::upper_bound(*positions, position), position);
    return true;
  });
}

std::string OperatingTimes::key_of_tool(const host::Tool& tool, Positions& failed) const {
  KeptValue<Value> id;
  for (std::size_t position = 0; position < operations_.size() && !id.is_settled(); ++position) {
    if (!operations_[position].tool_id.value()) continue;  // its own id failed the comparison before
    if (!id.get([&] { return tool.ToolParameters().Item("ToolID").Value(); })) failed.push_back(position);
  }
  std::string key = key_of_all;
  skip_failure([&] {
    if (id.value()) key = key_of(*id.value());
  });
  return key;
}

double OperatingTimes::of(const host::Tool& tool) {
  if (count() == 0) return 0;
  compare_unread();
  Positions counted;
  std::string key = key_of_tool(tool, counted);
  if (key == key_of_all) {
    counted.resize(operations_.size());
    std::iota(counted.begin(), counted.end(), std::size_t{0});
    return sum(counted).value;
  }
  const Positions equal_ones = positions_for(key);
  if (equal_ones.empty()) key = key_of_incomparable;  // one sum for all such tools
  // A comparison that another tool's walk wouldn't fail makes the sum this tool's alone.
  const bool is_common = counted.empty() && unread_.empty();
  if (const auto kept = sums_.find(key); is_common && kept != sums_.end()) return kept->second;
  merge_into(counted, equal_ones);
  merge_into(counted, incomparable_);
  merge_into(counted, unread_);
  const Sum result = sum(counted);
  if (is_common && result.is_settled) sums_.emplace(key, result.value);
  return result.value;
}

OperatingTimes::Positions OperatingTimes::positions_for(const std::string& key) const {
  Positions positions;
  if (key == "nan") return positions;
  for (const std::string& equal_key : keys_equal_to(key)) {
    if (const auto found = by_key_.find(equal_key); found != by_key_.end()) {
      merge_into(positions, found->second);
    }
  }
  return positions;
}

OperatingTimes::Sum OperatingTimes::sum(const Positions& positions) {
  Sum sum{0, true};
  for (const std::size_t position : positions) {
    Operation& operation = operations_[position];
    const double* duration = operation.duration.get([&] { return operation.view.Duration(); });
    sum.is_settled &= operation.duration.is_settled();
    const double next = sum.value + (duration ? *duration : 0);
    if (std::isfinite(next)) sum.value = next;  // an addition that overflows fails, and is passed over
  }
  return sum;
}

}  // namespace mQuorvexList
