#pragma once

#include <compare>
#include <optional>

#include "toollist/operating_times.h"

namespace mQuorvexList {

/// Where a tool stands on the machine; both numbers count from 1.
struct TurretStation {
  std::int32_t turret;
  std::int32_t station;
  friend auto operator<=>(const TurretStation&, const TurretStation&) = default;
};

/// Writes the row of a tool to the open list file. A name that isn't two pieces around one "#" is told to the
/// user and gives no row; an identifier that isn't a number gives none either. `place` is the tool's where
/// the caller has just read it. From the first operation on failing statements are skipped, and a row with a
/// value that can't be read isn't written; before that, or without operations, throws Failure.
void WriteToolListRow(const host::Tool& tool, OperatingTimes& times, std::optional<TurretStation> place = {});

}  // namespace mQuorvexList
