#pragma once

#include <optional>
#include <string>
#include <vector>

#include "foundation/kept_walk.h"
#include "host/document.h"

namespace mQuorvexList {

/// The operating time of each tool: the sum over a walk over all operations, in which one whose ToolID equals
/// the tool's adds its duration, a comparison that fails lets the addition run, and an addition that fails is
/// passed over. Kept are the operations' ids, where they are texts; see KeptWalk.
class OperatingTimes {
 public:
  explicit OperatingTimes(host::Document document) : document_(std::move(document)) {}

  /// The operations in their order. Throws Failure where the host refuses them, and the next call tries anew.
  const std::vector<host::Operation>& operations();
  /// The ToolID of an operation, as the host gives it now. Throws Failure.
  static automation::Value tool_id(const host::Operation& operation);
  /// The sum of the tool's durations; 0 in a document without operations, whatever the tool is. Throws
  /// Failure only where the walk can't start.
  double of(const host::Tool& tool);
  /// Whether the last walk had any.
  [[nodiscard]] bool has_operations() const { return walk_ && !walk_->enumerated().empty(); }

 private:
  /// Likewise, and told to the walk.
  automation::Value asked_tool_id(const host::Operation& operation);

  host::Document document_;
  std::optional<KeptWalk<host::Operation, std::string>> walk_;
};

}  // namespace mQuorvexList
