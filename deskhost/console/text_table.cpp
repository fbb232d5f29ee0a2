#include "deskhost/console/text_table.h"

#include <algorithm>
#include <ostream>
#include <string_view>

#include "platform/text.h"

namespace deskhost {

using platform::character_count;

namespace {

std::string key_of(std::string heading) {
  std::ranges::transform(heading, heading.begin(), [](char c) {
    if (c == ' ') return '_';
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return heading;
}

nlohmann::ordered_json value_of(const std::string& cell, Align align) {
  if (cell == "-") return nullptr;
  if (align == Align::left) return cell;
  const auto number = nlohmann::ordered_json::parse(cell, nullptr, false);
  return number.is_number() ? number : nlohmann::ordered_json(cell);
}

}  // namespace

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

nlohmann::ordered_json TextTable::json() const {
  nlohmann::ordered_json all = nlohmann::ordered_json::array();
  for (std::size_t row = 1; row < rows_.size(); ++row) {
    nlohmann::ordered_json object = nlohmann::ordered_json::object();
    for (std::size_t i = 0; i < rows_[row].size(); ++i)
      object[key_of(columns_[i].heading)] = value_of(rows_[row][i], columns_[i].align);
    all.push_back(std::move(object));
  }
  return all;
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
