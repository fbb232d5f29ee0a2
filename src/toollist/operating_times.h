#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "foundation/failures.h"
#include "host/document.h"

namespace mQuorvexList {

/// A value of the host that is kept once it has been read. While the host refuses it, each reader asks anew,
/// as it would without anything kept; a value that was refused eight times in a row counts as refused for
/// good, so that what the host never gives isn't asked for by every reader.
template <class T>
class KeptValue {
 public:
  /// Null where the value is refused.
  template <class Read>
  const T* get(Read&& read) {
    if (!is_settled()) {
      ++readings_;
      skip_failure([&] { value_ = read(); });
    }
    return value();
  }
  /// Null where it isn't known.
  [[nodiscard]] const T* value() const noexcept { return value_ ? &*value_ : nullptr; }
  /// No later reader gets another answer.
  [[nodiscard]] bool is_settled() const noexcept { return value_ || readings_ == most_readings; }

 private:
  static constexpr int most_readings = 8;
  std::optional<T> value_;
  int readings_ = 0;
};

/// The operations of a document as one run of the export sees them, and the operating time of each tool.
///
/// It stands for a walk over all operations for every tool, in which an operation whose ToolID equals the
/// tool's adds its duration to the tool's sum, a comparison that fails lets the addition run, and an addition
/// that fails is passed over. Both ids are read for every comparison of that walk, and the duration for every
/// addition; here each is read once, in four host calls per operation, and again only by the comparison or
/// addition that comes next where it was refused. So a refusal touches the one comparison or addition that
/// met it: the operation counts for that one tool, or its duration is missing from that one sum. What
/// KeptValue takes as refused for good counts for every tool, or is missing from every sum.
///
/// The sums are those of the walk to the last bit: they are added up in the order of the operations, and once
/// for tools of the same ToolID.
class OperatingTimes {
 public:
  explicit OperatingTimes(host::Document document) : document_(std::move(document)) {}

  /// The number of the operations. The first call takes them from the host; it throws Failure where the walk
  /// can't start, and the next call tries anew.
  std::size_t count();
  /// The ToolID of the operation at `position` (from 0, below `count`), null where the host refuses it to
  /// this reader; the tools' sums read it for themselves.
  const automation::Value* tool_id(std::size_t position);
  /// The sum of the tool's durations; 0 in a document without operations, whatever the tool is. Throws
  /// Failure only where the walk can't start.
  double of(const host::Tool& tool);

 private:
  using Positions = std::vector<std::size_t>;  // ascending
  struct Operation {
    host::Operation view;
    KeptValue<automation::Value> tool_id;
    KeptValue<double> duration;
  };
  struct Sum {
    double value;
    bool is_settled;  // whether the next tool of the same ToolID has the same sum
  };

  /// Reads the ids that aren't known yet.
  void compare_unread();
  /// The key of the tool's id. Into `failed` go the operations whose comparison met a refusal before the id
  /// was read.
  std::string key_of_tool(const host::Tool& tool, Positions& failed) const;
  /// Positions of the operations that a tool id of that key takes in.
  [[nodiscard]] Positions positions_for(const std::string& key) const;
  Sum sum(const Positions& positions);

  host::Document document_;
  bool taken_ = false;
  std::vector<Operation> operations_;
  Positions unread_;  // those that aren't in one of the next two yet
  std::unordered_map<std::string, Positions> by_key_;
  Positions incomparable_;  // those that count for every tool
  std::unordered_map<std::string, double> sums_;
};

}  // namespace mQuorvexList
