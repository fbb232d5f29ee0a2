#pragma once

#include <cstdint>
#include <vector>

namespace deskhost {

/// A tool's shift on the page, in pixels, from its station to the tool's tip.
struct ShiftArrow {
  double x, y;
  double tip_x, tip_y;
  std::int32_t station;
};

/// Moves arrows that lie on one another apart, sideways, so that each can be seen.
void spread(std::vector<ShiftArrow>& arrows);

}  // namespace deskhost
