#pragma once

#include <string>
#include <string_view>

namespace deskhost {

/// A number for an SVG or its reader: at most three decimals, a point, no exponent.
std::string short_number(double value);
/// Text for SVG content and attributes; control characters become "?".
std::string escaped(std::string_view text);

/// An SVG page that grows downwards. Lengths in pixels, from the upper left corner. Classes name the style of
/// what is drawn; the page's own style sheet knows them, for light and for dark surroundings.
class Svg {
 public:
  explicit Svg(double width) : width_(width) {}

  void line(double x1, double y1, double x2, double y2, std::string_view style);
  /// A line with a head at its end.
  void arrow(double x1, double y1, double x2, double y2, std::string_view style);
  void circle(double x, double y, double radius, std::string_view style);
  void box(double x, double y, double width, double height, std::string_view style,
           std::string_view fill = {});
  /// `anchor`: start, middle or end; at most `limit` characters, 0 for all.
  void text(double x, double y, std::string_view content, std::string_view style,
            std::string_view anchor = "start", std::size_t limit = 0);

  /// The whole page, `height` high.
  [[nodiscard]] std::string page(double height, std::string_view title) const;
  /// The same for the middle of another page, whose style sheet has to have this one.
  [[nodiscard]] std::string inset(double height, std::string_view title) const;
  static std::string_view style_sheet();

 private:
  [[nodiscard]] std::string with_head(double height, std::string_view title, std::string_view head) const;

  double width_;
  std::string body_;
};

}  // namespace deskhost
