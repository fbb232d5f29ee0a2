#include "deskhost/console/text_table.h"

#include <algorithm>
#include <ostream>
#include <string_view>

#include "platform/text.h"

namespace deskhost {

using platform::character_count;

TextTable::TextTable(std::vector<Column> columns) : columns_(std::move(columns)) {
  std::vector<std::string> headings;
  for (const Column& column : columns_) headings.push_back(column.heading);
  rows_.push_back(std::move(headings));
}

void TextTable::print(std::ostream& out) const {
  std::vector<std::size_t> widths(columns_.size());
  for (const auto& row : rows_) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], character_count(row[i]));
  }
  for (const auto& row : rows_) out << line_of(row, widths) << '\n';
}

std::string TextTable::line_of(const std::vector<std::string>& row,
                               const std::vector<std::size_t>& widths) const {
  std::string line;
  for (std::size_t i = 0; i < row.size(); ++i) {
    const std::string padding(widths[i] - character_count(row[i]), ' ');
    line += "  " + (columns_[i].align == Align::right ? padding + row[i] : row[i] + padding);
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

std::string printable(std::string text) {
  std::ranges::replace_if(
      text, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }, '?');
  return text;
}

}  // namespace deskhost
