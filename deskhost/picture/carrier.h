#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "deskhost/model/document.h"

namespace deskhost {

struct ToolMark {
  std::string name;
  std::string orientation;
  std::array<double, 3> shift{};  ///< in the tool's own unit
  double scale = 1;               ///< from that unit to the document's
  std::string unit;               ///< the tool's, where it isn't the document's

  /// A shift in the document's unit.
  [[nodiscard]] double length(std::size_t axis) const noexcept { return shift[axis] * scale; }
  /// A shift as the tool has it, with its unit where that is another than the document's.
  [[nodiscard]] std::string shift_text(std::size_t axis) const;
};

struct SolidMark {
  std::string name;
  std::string fill;
  bool mounted = false;
};

struct Spot {
  std::int32_t number = 0;
  std::int32_t reference = 0;
  double x = 0, y = 0, z = 0;  // of the reference point, in document units
  double side_x = 0;           // the same from the side, where stations without offsets stand in a column
  std::vector<ToolMark> tools;
  std::vector<SolidMark> solids;
};

/// A turret or a magazine, ready to be drawn.
struct Carrier {
  std::string title;
  bool in_place = true;  // false: the stations have no offsets and are drawn evenly round a circle
  double radius = 0;
  std::vector<Spot> spots;
  std::vector<SolidMark> off_station;
};

/// The turrets of a machine with turrets, or the magazine of a mill; a tool or solid whose number has no
/// station stands on none.
std::vector<Carrier> carriers_of(const Document& document);

/// The tools that none of these stations has.
std::vector<const Tool*> tools_on_no_station(const Document& document);

}  // namespace deskhost
