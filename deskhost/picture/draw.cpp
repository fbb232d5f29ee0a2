#include "deskhost/picture/draw.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <vector>

#include "deskhost/picture/carrier.h"
#include "deskhost/picture/side_arrows.h"
#include "deskhost/picture/svg.h"

namespace deskhost {
namespace {

constexpr double page_width = 1120;
constexpr double margin = 30;
constexpr double view_height = 400;
constexpr double view_width = (page_width - 3 * margin) / 2;
constexpr double row_height = 21;

bool is_empty(const Spot& spot) {
  return spot.tools.empty() && spot.solids.empty();
}

/// Stations that have no place of their own stand one above the other, those with tools alone.
void line_up(Carrier& carrier) {
  if (carrier.in_place) return;
  std::erase_if(carrier.spots, is_empty);
  const auto count = static_cast<double>(carrier.spots.size());
  double place = 0.5;
  for (Spot& spot : carrier.spots) spot.side_x = carrier.radius * (1 - 2 * place++ / count);
}

/// Maps a part of a plane into a box on the page: `u` to the right, `v` upwards, one scale for both.
class View {
 public:
  View(double left, double top) : left_(left), top_(top) {}

  void cover(double u, double v) {
    low_u_ = std::min(low_u_, u);
    high_u_ = std::max(high_u_, u);
    low_v_ = std::min(low_v_, v);
    high_v_ = std::max(high_v_, v);
  }
  void fit() {
    constexpr double rim = 46;
    const double width = std::max(high_u_ - low_u_, 1.0);
    const double height = std::max(high_v_ - low_v_, 1.0);
    scale_ = std::min((view_width - 2 * rim) / width, (view_height - 2 * rim) / height);
  }
  [[nodiscard]] double x(double u) const {
    return left_ + view_width / 2 + (u - (low_u_ + high_u_) / 2) * scale_;
  }
  [[nodiscard]] double y(double v) const {
    return top_ + view_height / 2 - (v - (low_v_ + high_v_) / 2) * scale_;
  }
  [[nodiscard]] double scale() const { return scale_; }
  [[nodiscard]] double left() const { return left_; }
  [[nodiscard]] double top() const { return top_; }

 private:
  double left_, top_;
  double low_u_ = 0, high_u_ = 0, low_v_ = 0, high_v_ = 0;
  double scale_ = 1;
};

void draw_frame(Svg& svg, const View& view, const char* caption, const char* right, const char* up) {
  svg.text(view.left(), view.top() + 12, caption, "soft");
  const double x = view.left() + 14;
  const double y = view.top() + view_height - 14;
  svg.arrow(x, y, x + 34, y, "direction");
  svg.arrow(x, y, x, y - 34, "direction");
  svg.text(x + 38, y + 4, right, "soft");
  svg.text(x, y - 39, up, "soft", "middle");
}

/// A length of 1, 2 or 5 times a power of ten that shows well.
void draw_scale(Svg& svg, const View& view, const char* unit) {
  const double wanted = 70 / view.scale();
  const double decade = std::pow(10, std::floor(std::log10(wanted)));
  const double length = decade * (wanted / decade >= 5 ? 5 : wanted / decade >= 2 ? 2 : 1);
  const double right = view.left() + view_width;
  const double y = view.top() + view_height - 14;
  const double left = right - length * view.scale();
  svg.line(left, y, right, y, "direction");
  svg.line(left, y - 4, left, y + 4, "direction");
  svg.line(right, y - 4, right, y + 4, "direction");
  svg.text(right, y - 8, short_number(length) + " " + unit, "soft", "end");
}

void draw_solid(Svg& svg, double x, double y, const SolidMark& solid) {
  svg.box(x - 5, y - 5, 10, 10, solid.mounted ? "solid" : "unmounted", solid.fill);
}

void draw_front(Svg& svg, const Carrier& carrier, double left, double top) {
  View view(left, top);
  view.cover(-carrier.radius, -carrier.radius);
  view.cover(carrier.radius, carrier.radius);
  for (const Spot& spot : carrier.spots) view.cover(spot.y, spot.x);
  view.fit();
  svg.circle(view.x(0), view.y(0), carrier.radius * view.scale(), "body");
  svg.line(view.x(0) - 9, view.y(0), view.x(0) + 9, view.y(0), "direction");
  svg.line(view.x(0), view.y(0) - 9, view.x(0), view.y(0) + 9, "direction");
  draw_frame(svg, view,
             carrier.in_place ? "Front, stations at their places" : "Front, stations in their order", "Y",
             "X");
  for (const Spot& spot : carrier.spots) {
    const double x = view.x(spot.y);
    const double y = view.y(spot.x);
    const double away = std::max(std::hypot(x - view.x(0), y - view.y(0)), 1.0);
    const double ux = (x - view.x(0)) / away;
    const double uy = (y - view.y(0)) / away;
    svg.line(view.x(0) + 14 * ux, view.y(0) + 14 * uy, x, y, "rule");
    svg.circle(x, y, 6, spot.tools.empty() ? "place" : "tool");
    svg.text(x + 21 * ux, y + 21 * uy + 4, std::to_string(spot.number), "label", "middle");
    for (std::size_t i = 0; i < spot.solids.size(); ++i) {
      const double in = 20 + 14 * static_cast<double>(i);
      draw_solid(svg, x - in * ux, y - in * uy, spot.solids[i]);
    }
  }
}

/// The station's number stands at the tip, since several arrows may start at one point.
void draw_shift(Svg& svg, const ShiftArrow& arrow) {
  const double length = std::hypot(arrow.tip_x - arrow.x, arrow.tip_y - arrow.y);
  if (length == 0) return;
  svg.arrow(arrow.x, arrow.y, arrow.tip_x, arrow.tip_y, "shift");
  svg.text(arrow.tip_x + 9 * (arrow.tip_x - arrow.x) / length,
           arrow.tip_y + 9 * (arrow.tip_y - arrow.y) / length + 4, std::to_string(arrow.station), "tip",
           "middle");
}

void draw_shifts(Svg& svg, const Carrier& carrier, const View& view) {
  std::vector<ShiftArrow> arrows;
  for (const Spot& spot : carrier.spots) {
    const double x = view.x(spot.z);
    const double y = view.y(spot.side_x);
    for (const ToolMark& tool : spot.tools) {
      if (tool.shift[0] == 0 && tool.shift[2] == 0) svg.circle(x, y, 9, "noshift");
      arrows.push_back(
          {x, y, view.x(spot.z + tool.length(2)), view.y(spot.side_x + tool.length(0)), spot.number});
    }
  }
  spread(arrows);
  for (const ShiftArrow& arrow : arrows) draw_shift(svg, arrow);
}

void draw_side(Svg& svg, Carrier carrier, double left, double top, const char* unit) {
  line_up(carrier);
  View view(left, top);
  const double depth = carrier.radius * 0.3;
  view.cover(-depth, carrier.radius);
  view.cover(depth, -carrier.radius);
  for (const Spot& spot : carrier.spots) {
    view.cover(spot.z, spot.side_x);
    for (const ToolMark& tool : spot.tools) view.cover(spot.z + tool.length(2), spot.side_x + tool.length(0));
  }
  view.fit();
  svg.box(view.x(-depth), view.y(carrier.radius), 2 * depth * view.scale(), 2 * carrier.radius * view.scale(),
          "body");
  svg.line(view.left() + 60, view.y(0), view.left() + view_width, view.y(0), "axis");
  draw_frame(svg, view, "Side, with the tools' shifts in X and Z", "Z", "X");
  draw_scale(svg, view, unit);
  // Stations behind one another share a label.
  std::map<std::pair<double, double>, std::pair<std::string, double>> labels;
  for (const Spot& spot : carrier.spots) {
    const double x = view.x(spot.z);
    const double y = view.y(spot.side_x);
    auto& [numbers, to_the_right] = labels[{std::round(x / 4), std::round(y / 4)}];
    numbers += (numbers.empty() ? "" : ", ") + std::to_string(spot.number);
    for (const ToolMark& tool : spot.tools) to_the_right += tool.length(2);
  }
  draw_shifts(svg, carrier, view);
  for (const Spot& spot : carrier.spots) {
    svg.circle(view.x(spot.z), view.y(spot.side_x), 4.5, spot.tools.empty() ? "place" : "tool");
  }
  for (const auto& [place, label] : labels) {
    const bool left_of_it = label.second > 0;
    svg.text(place.first * 4 + (left_of_it ? -13 : 13), place.second * 4 + 4, label.first, "label",
             left_of_it ? "end" : "start");
  }
}

struct Column {
  const char* heading;
  double x;
  const char* anchor;
};
constexpr std::array<Column, 8> columns{{{"Station", 78, "end"},
                                         {"Reference", 158, "end"},
                                         {"Tool", 182, "start"},
                                         {"Orientation", 560, "start"},
                                         {"Shift X", 706, "end"},
                                         {"Y", 782, "end"},
                                         {"Z", 858, "end"},
                                         {"Solid", 896, "start"}}};

void draw_row(Svg& svg, double y, const std::array<std::string, 8>& cells, const char* style) {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const std::size_t limit = i == 2 ? 52 : i == 7 ? 26 : 0;
    if (!cells[i].empty()) svg.text(columns[i].x, y, cells[i], style, columns[i].anchor, limit);
  }
}

/// Gives the place below the table.
double draw_table(Svg& svg, const Carrier& carrier, double top) {
  std::array<std::string, 8> headings;
  std::ranges::transform(columns, headings.begin(), &Column::heading);
  double y = top + row_height;
  draw_row(svg, y, headings, "soft");
  const bool empty_ones_too = carrier.spots.size() <= 16;
  std::size_t left_out = 0;
  for (const Spot& spot : carrier.spots) {
    if (is_empty(spot) && !empty_ones_too) {
      ++left_out;
      continue;
    }
    svg.line(margin, y + 7, page_width - margin, y + 7, "rule");
    const std::size_t rows = std::max<std::size_t>({1, spot.tools.size(), spot.solids.size()});
    for (std::size_t row = 0; row < rows; ++row) {
      y += row_height;
      std::array<std::string, 8> cells;
      if (row == 0) {
        cells[0] = std::to_string(spot.number);
        cells[1] = std::to_string(spot.reference);
      }
      if (row < spot.tools.size()) {
        const ToolMark& tool = spot.tools[row];
        cells[2] = tool.name;
        cells[3] = tool.orientation;
        for (std::size_t i = 0; i < 3; ++i) cells[4 + i] = tool.shift_text(i);
      }
      if (row < spot.solids.size()) {
        cells[7] = spot.solids[row].name;
        draw_solid(svg, columns[7].x - 13, y - 4, spot.solids[row]);
      }
      draw_row(svg, y, cells, "number");
    }
  }
  for (const SolidMark& solid : carrier.off_station) {
    y += row_height;
    draw_solid(svg, columns[7].x - 13, y - 4, solid);
    draw_row(svg, y, {"–", "", "", "", "", "", "", solid.name}, "number");
  }
  if (left_out > 0) {
    y += row_height;
    svg.text(columns[2].x, y, std::to_string(left_out) + " stations without a tool", "soft");
  }
  return y + 2 * row_height;
}

/// Two columns of names under what they have in common; gives the place below.
double draw_tools_on_no_station(Svg& svg, const std::vector<const Tool*>& tools, double y) {
  if (tools.empty()) return y;
  const std::string count = std::to_string(tools.size()) + (tools.size() == 1 ? " tool" : " tools");
  svg.text(margin, y, count + " on no station", "soft");
  for (std::size_t i = 0; i < tools.size(); ++i) {
    if (i % 2 == 0) y += row_height;
    svg.text(margin + static_cast<double>(i % 2) * page_width / 2, y, tools[i]->name(), "number", "start",
             70);
  }
  return y + row_height;
}

}  // namespace

std::string draw_document(const Document& document) {
  const char* unit = document.unit_system == inches ? "in" : "mm";
  const std::vector<Carrier> carriers = carriers_of(document);
  Svg svg(page_width);
  double y = margin + 14;
  svg.text(margin, y, document.name, "title", "start", 70);
  svg.text(page_width - margin, y, std::string("lengths in ") + unit + ", unless another unit is given",
           "soft", "end");
  if (carriers.empty()) svg.text(margin, y += 30, "The document has no machine setup to show.", "soft");
  for (const Carrier& carrier : carriers) {
    y += 34;
    svg.text(margin, y, carrier.title, "heading", "start", 70);
    y += 14;
    draw_front(svg, carrier, margin, y);
    draw_side(svg, carrier, 2 * margin + view_width, y, unit);
    y = draw_table(svg, carrier, y + view_height + 4);
  }
  y = draw_tools_on_no_station(svg, tools_on_no_station(document), y);
  return svg.page(y + margin / 2, document.name);
}

}  // namespace deskhost
