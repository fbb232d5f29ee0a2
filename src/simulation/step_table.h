#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

/// Which turns bring a tool's solid from the position of its model to the present one.
namespace simulation {

/// A set of steps; they are performed in the order A, B, C.
using Steps = std::uint8_t;
inline constexpr Steps A = 1;
inline constexpr Steps B = 2;
inline constexpr Steps C = 4;
inline constexpr Steps none = 0;
/// A difference that doesn't come up in the column; it turns nothing.
inline constexpr Steps outside = 0;

/// By the present position less the one in the database. The columns are the positions in the database.
struct StepRow {
  std::int64_t difference;
  Steps at_11, at_12, at_13_14_17, at_16, at_any_other;
};

inline constexpr std::array<StepRow, 10> step_table{{
    {-2, outside, outside, B | C, A | B, outside},
    {-1, outside, none, C, B, A | C},
    {0, A | B | C, B, none, none, A | B | C},
    {1, A | C, A | C, B, C, C},
    {2, A, A | B | C, A | C, B | C, A},
    {3, A | B, A | B | C, A | B | C, A | B | C, A | B},
    {4, C, A | C, A | B, A | C, A},
    {5, B | C, A, A, A, B | C},
    {6, B, A | B, outside, outside, C},
    {7, none, outside, outside, outside, outside},
}};

constexpr Steps steps_for(std::int32_t position, std::int32_t database_position) {
  std::int64_t difference = std::int64_t{position} - database_position;
  if (difference < -2) difference += 8;
  const auto* row = std::ranges::find(step_table, difference, &StepRow::difference);
  if (row == step_table.end()) return outside;
  switch (database_position) {
    case 11:
      return row->at_11;
    case 12:
      return row->at_12;
    case 13:
    case 14:
    case 17:
      return row->at_13_14_17;
    case 16:
      return row->at_16;
    default:
      return row->at_any_other;
  }
}

}  // namespace simulation
