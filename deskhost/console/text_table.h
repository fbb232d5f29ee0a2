#pragma once

#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace deskhost {

/// A result: for a reader, and the same for a program.
struct Page {
  std::string text;
  nlohmann::ordered_json json = nlohmann::ordered_json::object();
};

enum class Align { left, right };

/// Rows under headings, for a reader; the columns become as wide as their widest cell.
class TextTable {
 public:
  struct Column {
    std::string heading;
    Align align = Align::left;
  };
  explicit TextTable(std::vector<Column> columns);

  /// A cell for each column, or fewer.
  void add(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }
  [[nodiscard]] bool is_empty() const noexcept { return rows_.size() == 1; }
  void print(std::ostream& out) const;
  /// An object for each row: the headings in small letters with "_" for blanks; numbers where a column of
  /// numbers has one, null for "-".
  [[nodiscard]] nlohmann::ordered_json json() const;

 private:
  [[nodiscard]] std::string line_of(const std::vector<std::string>& row,
                                    const std::vector<std::size_t>& widths) const;

  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;  // the headings first
};

/// A text for one line of a table.
std::string printable(std::string text);

}  // namespace deskhost
