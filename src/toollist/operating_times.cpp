#include "toollist/operating_times.h"

#include <cmath>

#include "foundation/failures.h"

namespace mQuorvexList {

using automation::Value;

const std::vector<host::Operation>& OperatingTimes::operations() {
  if (!walk_) walk_.emplace(document_.Operations(), Entries::enumerated, Meets::every);
  walk_->begin({});
  return walk_->enumerated();
}

// Each time the whole way: an operation can get another tool.
Value OperatingTimes::tool_id(const host::Operation& operation) {
  return operation.ToolSettings().Item("ToolID").Value();
}

Value OperatingTimes::asked_tool_id(const host::Operation& operation) {
  Value id = tool_id(operation);
  if (id.text()) walk_->meets(*id.text());
  return id;
}

double OperatingTimes::of(const host::Tool& tool) {
  if (operations().empty()) return 0;
  double sum = 0;
  std::optional<Value> own_id;
  while (walk_->next()) {
    const host::Operation operation = walk_->entry();
    const bool counts = passes([&] {
      // Until the tool's own id is read the walk comes to every operation, later to those that may have it.
      const bool is_kept = !own_id && walk_->known();
      const Value id = is_kept ? Value(*walk_->known()) : asked_tool_id(operation);
      if (!own_id) {
        own_id = tool.ToolParameters().Item("ToolID").Value();
        if (own_id->text()) walk_->want(*own_id->text());
      }
      return equal(id, *own_id) && (!is_kept || equal(asked_tool_id(operation), *own_id));
    });
    if (!counts) continue;
    walk_->used();
    skip_failure([&] {
      const double next = sum + operation.Duration();
      if (std::isfinite(next)) sum = next;  // an addition that overflows fails, and is passed over
    });
  }
  return sum;
}

}  // namespace mQuorvexList
