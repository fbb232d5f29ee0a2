#include "deskhost/picture/svg.h"

#include <cmath>

#include "automation/number.h"
#include "platform/text.h"

namespace deskhost {
namespace {

// Plain colours, since not every reader of SVG knows variables; one that doesn't know media stays light.
constexpr std::string_view styles = R"(
  text { font: 12px system-ui, 'DejaVu Sans', sans-serif; fill: #1c2430; }
  .paper { fill: #ffffff; }
  .title { font-size: 20px; font-weight: 600; }
  .heading { font-size: 15px; font-weight: 600; }
  .soft { fill: #5d6a7a; font-size: 11px; }
  .number { font-variant-numeric: tabular-nums; }
  .label { font-weight: 600; fill: #1d5fa8; stroke: #ffffff; stroke-width: 3px; paint-order: stroke;
           stroke-linejoin: round; }
  .tip { font-size: 11px; fill: #c2410c; stroke: #ffffff; stroke-width: 3px; paint-order: stroke; }
  .body { fill: #eef1f5; stroke: #d4dae2; }
  .rule { stroke: #d4dae2; }
  .axis { stroke: #5d6a7a; stroke-dasharray: 6 3 1 3; }
  .direction { stroke: #5d6a7a; fill: #5d6a7a; stroke-width: 1.2; }
  .place { fill: #ffffff; stroke: #1d5fa8; stroke-width: 1.6; }
  .tool { fill: #1d5fa8; stroke: #1d5fa8; }
  .concerned { fill: #c2410c; stroke: #c2410c; stroke-width: 3; }
  .shift { stroke: #c2410c; fill: #c2410c; stroke-width: 1.6; }
  .noshift { stroke: #c2410c; fill: none; stroke-width: 1.6; }
  .solid { stroke: #1c2430; }
  .unmounted { stroke: #1c2430; stroke-dasharray: 2 2; fill-opacity: 0.35; }
  @media (prefers-color-scheme: dark) {
    text { fill: #e6eaf0; }
    .paper { fill: #14181e; }
    .soft { fill: #9aa7b6; }
    .label { fill: #7db4f0; stroke: #14181e; }
    .tip { fill: #fb923c; stroke: #14181e; }
    .body { fill: #1f262f; stroke: #343d49; }
    .rule { stroke: #343d49; }
    .axis { stroke: #9aa7b6; }
    .direction { stroke: #9aa7b6; fill: #9aa7b6; }
    .place { fill: #14181e; stroke: #7db4f0; }
    .tool { fill: #7db4f0; stroke: #7db4f0; }
    .concerned { fill: #fb923c; stroke: #fb923c; }
    .shift { stroke: #fb923c; fill: #fb923c; }
    .noshift { stroke: #fb923c; }
    .solid, .unmounted { stroke: #e6eaf0; }
  }
)";

std::string attribute(std::string_view name, double value) {
  return " " + std::string(name) + "=\"" + short_number(value) + "\"";
}

std::string attribute(std::string_view name, std::string_view value) {
  return " " + std::string(name) + "=\"" + escaped(value) + "\"";
}

std::string shortened(std::string_view text, std::size_t limit) {
  std::size_t characters = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (platform::begins_character(text[i]) && limit != 0 && ++characters > limit)
      return std::string(text.substr(0, i)) + "…";
  }
  return std::string(text);
}

}  // namespace

std::string short_number(double value) {
  return automation::shortest_text(std::round(value * 1000) / 1000 + 0.0);
}

std::string escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      default:
        result += static_cast<unsigned char>(c) < ' ' || c == '\x7f' ? '?' : c;
    }
  }
  return result;
}

void Svg::line(double x1, double y1, double x2, double y2, std::string_view style) {
  body_ += "<line" + attribute("x1", x1) + attribute("y1", y1) + attribute("x2", x2) + attribute("y2", y2) +
           attribute("class", style) + "/>\n";
}

void Svg::arrow(double x1, double y1, double x2, double y2, std::string_view style) {
  constexpr double head = 8;
  constexpr double half_width = 3.2;
  const double length = std::hypot(x2 - x1, y2 - y1);
  if (length == 0) return;
  const double ux = (x2 - x1) / length;
  const double uy = (y2 - y1) / length;
  const double base = std::min(head, length);
  const double bx = x2 - ux * base;
  const double by = y2 - uy * base;
  line(x1, y1, bx, by, style);
  body_ += "<path d=\"M" + short_number(x2) + " " + short_number(y2) + "L" +
           short_number(bx - uy * half_width) + " " + short_number(by + ux * half_width) + "L" +
           short_number(bx + uy * half_width) + " " + short_number(by - ux * half_width) + "Z\"" +
           attribute("class", style) + "/>\n";
}

void Svg::circle(double x, double y, double radius, std::string_view style) {
  body_ += "<circle" + attribute("cx", x) + attribute("cy", y) + attribute("r", radius) +
           attribute("class", style) + "/>\n";
}

void Svg::box(double x, double y, double width, double height, std::string_view style,
              std::string_view fill) {
  body_ += "<rect" + attribute("x", x) + attribute("y", y) + attribute("width", width) +
           attribute("height", height) + attribute("class", style) +
           (fill.empty() ? std::string() : attribute("fill", fill)) + "/>\n";
}

void Svg::text(double x, double y, std::string_view content, std::string_view style, std::string_view anchor,
               std::size_t limit) {
  body_ += "<text" + attribute("x", x) + attribute("y", y) + attribute("class", style) +
           attribute("text-anchor", anchor) + ">" + escaped(shortened(content, limit)) + "</text>\n";
}

std::string_view Svg::style_sheet() {
  return styles;
}

std::string Svg::page(double height, std::string_view title) const {
  return with_head(height, title, "<style>" + std::string(styles) + "</style>\n");
}

std::string Svg::inset(double height, std::string_view title) const {
  return with_head(height, title, {});
}

std::string Svg::with_head(double height, std::string_view title, std::string_view head) const {
  const std::string size = short_number(width_) + " " + short_number(height);
  return "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + size + "\"" +
         attribute("width", width_) + attribute("height", height) + ">\n<title>" + escaped(title) +
         "</title>\n" + std::string(head) + "<rect class=\"paper\" width=\"100%\" height=\"100%\"/>\n" +
         body_ + "</svg>\n";
}

}  // namespace deskhost
