#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace deskhost::inspect {

/// A text as it stands in HTML; control characters become "?".
std::string text_in_html(std::string_view text);

/// A page of HTML that grows downwards, with a style of its own for light and dark surroundings and for
/// paper. Its classes begin with "i-": pictures have their own.
class Page {
 public:
  explicit Page(std::string_view title);

  struct Cell {
    std::string text;
    std::string style = {};  ///< a class; empty for none
  };
  void heading(std::string_view text);
  void paragraph(std::string_view text);
  void summary(std::string_view text);
  void open_table(std::initializer_list<Cell> headings);
  void row(std::initializer_list<Cell> cells);
  void close_table();

  /// HTML as it is.
  void raw(std::string_view html) { body_ += html; }
  /// A row whose second and third cell are HTML.
  void raw_row(std::string_view heading, std::string_view left, std::string_view right);

  [[nodiscard]] std::string html() const;

 private:
  std::string title_;
  std::string body_;
};

}  // namespace deskhost::inspect
