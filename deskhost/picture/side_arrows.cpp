#include "deskhost/picture/side_arrows.h"

#include <algorithm>
#include <cmath>

namespace deskhost {
namespace {

constexpr double too_near = 5;  // pixels
constexpr double step = 12;     // as high as the number at a tip

double length_of(const ShiftArrow& arrow) {
  return std::hypot(arrow.tip_x - arrow.x, arrow.tip_y - arrow.y);
}

/// How far a point is from the arrow's line, at any place between its ends.
double distance(const ShiftArrow& arrow, double x, double y) {
  const double length = length_of(arrow);
  if (length == 0) return std::hypot(x - arrow.x, y - arrow.y);
  const double ux = (arrow.tip_x - arrow.x) / length;
  const double uy = (arrow.tip_y - arrow.y) / length;
  const double along = std::clamp((x - arrow.x) * ux + (y - arrow.y) * uy, 0.0, length);
  return std::hypot(x - arrow.x - along * ux, y - arrow.y - along * uy);
}

/// Whether both ends of the shorter one are on the longer one.
bool lie_on_one_another(const ShiftArrow& a, const ShiftArrow& b) {
  const bool a_is_longer = length_of(a) >= length_of(b);
  const ShiftArrow& longer = a_is_longer ? a : b;
  const ShiftArrow& shorter = a_is_longer ? b : a;
  return distance(longer, shorter.x, shorter.y) < too_near &&
         distance(longer, shorter.tip_x, shorter.tip_y) < too_near;
}

}  // namespace

void spread(std::vector<ShiftArrow>& arrows) {
  const std::vector<ShiftArrow> before = arrows;
  for (std::size_t i = 0; i < arrows.size(); ++i) {
    const auto is_on_it = [&](const ShiftArrow& other) { return lie_on_one_another(other, before[i]); };
    const auto first = before.begin();
    const auto rank = std::count_if(first, first + static_cast<std::ptrdiff_t>(i), is_on_it);
    const double length = length_of(before[i]);
    if (rank == 0 || length == 0) continue;
    // to one side and the other by turns, farther each time
    const double side = static_cast<double>((rank + 1) / 2) * step * (rank % 2 == 0 ? -1 : 1);
    const double dx = -(before[i].tip_y - before[i].y) / length * side;
    const double dy = (before[i].tip_x - before[i].x) / length * side;
    ShiftArrow& moved = arrows[i];
    moved.x += dx;
    moved.tip_x += dx;
    moved.y += dy;
    moved.tip_y += dy;
  }
}

}  // namespace deskhost
