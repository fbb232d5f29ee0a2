#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

/// How a tool's working shift follows from the vector that the database gave it: which saved component goes
/// where, and with which sign. Nothing here calls the host.
namespace shapes {

enum class Saved : std::uint8_t { X, Y, Z };

/// One component of the working shift.
struct Component {
  Saved source;
  bool negated = false;

  friend constexpr Component operator-(Component component) { return {component.source, !component.negated}; }
  friend constexpr bool operator==(Component, Component) = default;
};

inline constexpr Component Xs{Saved::X};
inline constexpr Component Ys{Saved::Y};
inline constexpr Component Zs{Saved::Z};

struct OrientationRow {
  std::int32_t orientation;
  Component x, y, z;
};

/// Tools that aren't of a lathe style, by `Orientation`; any other value changes nothing.
inline constexpr std::array<OrientationRow, 6> orientation_rows{{
    {1, -Xs, Ys, -Zs},
    {2, Xs, Ys, Zs},
    {3, Zs, -Ys, Xs},
    {4, -Zs, Ys, Xs},
    {6, Ys, -Zs, -Xs},
    {7, Ys, Zs, Xs},
}};

/// Null where the orientation has no row.
constexpr const OrientationRow* orientation_row(std::int32_t orientation) {
  const auto* row = std::ranges::find(orientation_rows, orientation, &OrientationRow::orientation);
  return row == orientation_rows.end() ? nullptr : row;
}

/// X and Z of a lathe tool; its Y is always the saved one.
struct LatheRow {
  Component x, z;
  friend constexpr bool operator==(LatheRow, LatheRow) = default;
};

using LatheTable = std::array<LatheRow, 8>;

inline constexpr LatheTable table_a{{
    {Zs, -Xs},
    {Zs, Xs},
    {-Zs, Xs},
    {-Zs, -Xs},
    {-Xs, Zs},
    {-Xs, -Zs},
    {Xs, -Zs},
    {Xs, Zs},
}};
inline constexpr LatheTable table_b{{
    {Zs, Xs},
    {Zs, -Xs},
    {-Zs, -Xs},
    {-Zs, Xs},
    {Xs, Zs},
    {Xs, -Zs},
    {-Xs, -Zs},
    {-Xs, Zs},
}};
inline constexpr LatheTable table_c{{
    {-Zs, Xs},
    {Xs, Zs},
    {Xs, -Zs},
    {-Xs, -Zs},
    {-Xs, Zs},
    {Zs, Xs},
    {Zs, -Xs},
    {-Zs, -Xs},
}};

/// Which table a position in the database takes, and where in it the difference 0 lies.
struct LatheSelection {
  std::int32_t database_position;
  const LatheTable* table;
  std::int64_t offset;
};

inline constexpr std::array<LatheSelection, 6> lathe_selections{{
    {11, &table_a, 0},
    {12, &table_b, 1},
    {13, &table_a, 2},
    {14, &table_a, 2},
    {17, &table_a, 2},
    {16, &table_c, 2},
}};
inline constexpr LatheSelection other_lathe_selection{0, &table_b, 1};

/// The row for a tool that stands in `position` now and in `database_position` in the database (11 to 18 for
/// 1V to 4V and 1H to 4H); null where there is none.
constexpr const LatheRow* lathe_row(std::int32_t position, std::int32_t database_position) {
  std::int64_t difference = std::int64_t{position} - database_position;
  if (database_position == 17) difference += 4;
  if (difference < -2) difference += 8;
  const auto* found =
      std::ranges::find(lathe_selections, database_position, &LatheSelection::database_position);
  const LatheSelection& selection = found == lathe_selections.end() ? other_lathe_selection : *found;
  const std::int64_t row = difference + selection.offset;
  if (row < 0 || row > 7) return nullptr;
  return &(*selection.table)[static_cast<std::size_t>(row)];
}

struct SpindleGauge {
  std::int32_t spindle_size;
  double millimetres;
};

inline constexpr std::array<SpindleGauge, 5> spindle_gauges{{
    {30, 63.95},
    {40, 84.125},
    {45, 98.425},
    {50, 117.5},
    {60, 177.8},
}};

/// In millimetres; 0 for a size without a gauge.
constexpr double spindle_gauge(std::int32_t spindle_size) {
  const auto* row = std::ranges::find(spindle_gauges, spindle_size, &SpindleGauge::spindle_size);
  return row == spindle_gauges.end() ? 0.0 : row->millimetres;
}

}  // namespace shapes
