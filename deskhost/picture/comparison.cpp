#include "deskhost/picture/comparison.h"

#include <algorithm>
#include <cmath>

#include "deskhost/picture/carrier.h"
#include "deskhost/picture/svg.h"

namespace deskhost {
namespace {

constexpr double side_width = 420;
constexpr double gap = 40;
constexpr double radius = 140;
constexpr double head = 56;
constexpr double carrier_height = 2 * radius + 95;

double reach_of(const Carrier& carrier) {
  double reach = std::max(carrier.radius, 1.0);
  for (const Spot& spot : carrier.spots) reach = std::max({reach, std::abs(spot.x), std::abs(spot.y)});
  return reach;
}

const char* style_of(const Spot& spot, const std::set<std::string>& concerned) {
  const auto is_concerned = [&](const ToolMark& tool) { return concerned.contains(tool.name); };
  if (std::ranges::any_of(spot.tools, is_concerned)) return "concerned";
  return spot.tools.empty() ? "place" : "tool";
}

void draw_carrier(Svg& svg, const Carrier& carrier, const std::set<std::string>& concerned, double left,
                  double top) {
  const double scale = radius / reach_of(carrier);
  const double middle_x = left + side_width / 2;
  const double middle_y = top + 48 + radius;
  svg.text(left, top + 12, carrier.title, "heading", "start", 40);
  svg.circle(middle_x, middle_y, carrier.radius * scale, "body");
  for (const Spot& spot : carrier.spots) {
    const double x = middle_x + spot.y * scale;
    const double y = middle_y - spot.x * scale;
    const double away = std::max(std::hypot(x - middle_x, y - middle_y), 1.0);
    const double ux = (x - middle_x) / away;
    const double uy = (y - middle_y) / away;
    svg.circle(x, y, 7, style_of(spot, concerned));
    svg.text(x + 20 * ux, y + 20 * uy + 4, std::to_string(spot.number), "label", "middle");
    if (spot.tools.size() > 1) {
      svg.text(x - 20 * ux, y - 20 * uy + 4, "×" + std::to_string(spot.tools.size()), "soft", "middle");
    }
  }
}

double draw_side(Svg& svg, const PictureSide& side, double left) {
  svg.text(left, 22, side.title, "title");
  double top = head;
  for (const Carrier& carrier : carriers_of(side.document)) {
    draw_carrier(svg, carrier, side.concerned, left, top);
    top += carrier_height;
  }
  return top;
}

void draw_key(Svg& svg, double y) {
  double x = 10;
  const auto entry = [&](const char* style, const char* text, double width) {
    svg.circle(x, y - 4, 7, style);
    svg.text(x + 14, y, text, "soft");
    x += width;
  };
  entry("concerned", "a tool that is new or changed", 200);
  entry("tool", "other tools", 110);
  entry("place", "no tool", 90);
  svg.text(x, y, "×2: several tools on the station", "soft");
}

}  // namespace

std::string draw_comparison(const PictureSide& left, const PictureSide& right) {
  Svg svg(2 * side_width + gap);
  const double height = std::max(draw_side(svg, left, 0), draw_side(svg, right, side_width + gap));
  if (height == head) return {};
  draw_key(svg, height);
  return svg.inset(height + 20, "The machine before and after");
}

}  // namespace deskhost
