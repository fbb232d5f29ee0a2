#pragma once

#include <cstddef>

#include "automation/value.h"

namespace deskhost {

/// The place, from 0, of the 1-based index `value` in a collection of `count`; throws
/// Failure(subscript_out_of_range), and what the conversion of `value` throws.
inline std::size_t index_of(const automation::Value& value, std::size_t count) {
  const auto index = value.to_int32();
  if (index < 1 || static_cast<std::size_t>(index) > count) {
    throw automation::Failure(automation::Error::subscript_out_of_range);
  }
  return static_cast<std::size_t>(index) - 1;
}

}  // namespace deskhost
