#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/document.h"

namespace mQuorvexList {

/// The operations of a document as one run of the export sees them, and the operating time of each tool.
///
/// It stands for a walk over all operations for every tool, in which an operation whose ToolID equals the
/// tool's adds its duration to the tool's sum, a comparison that fails lets the addition run, and an addition
/// that fails is passed over. Each operation is read once, in four host calls. The sums are those of the walk
/// to the last bit: they are added up in the order of the operations, and once for tools of the same ToolID.
class OperatingTimes {
 public:
  explicit OperatingTimes(host::Document document) : document_(std::move(document)) {}

  struct Operation {
    std::optional<automation::Value> tool_id;  // none where the host refuses it
    std::optional<double> duration;            // likewise
  };
  /// In their order; read from the host at the first call. Throws Failure where the walk can't start, and the
  /// next call tries anew.
  const std::vector<Operation>& operations();

  /// The sum of the tool's durations; 0 in a document without operations, whatever the tool is. Throws
  /// Failure only where the walk can't start.
  double of(const host::Tool& tool);

 private:
  using Positions = std::vector<std::size_t>;
  void read_operations();
  /// Positions of the operations that a tool id of that key takes in.
  [[nodiscard]] Positions positions_for(const std::string& key) const;
  [[nodiscard]] double sum(const Positions& positions) const;
  /// `sum_of` at the first call for `key`, kept for the next ones.
  template <class SumOf>
  double kept(const std::string& key, SumOf&& sum_of);

  host::Document document_;
  bool read_ = false;
  std::vector<Operation> operations_;
  std::unordered_map<std::string, Positions> by_key_;
  Positions incomparable_;  // those that count for every tool
  std::unordered_map<std::string, double> sums_;
};

}  // namespace mQuorvexList
