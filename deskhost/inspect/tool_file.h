#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "formats/export_file.h"

namespace deskhost::inspect {

/// A data line as the add-in's own reader gives it.
struct DataLine {
  std::size_t number;  ///< in the file, from 1
  formats::LineFields fields;

  [[nodiscard]] bool is_whole() const { return fields.count() >= formats::field_count; }
  /// The field as UTF-8; empty for one that the line hasn't.
  [[nodiscard]] std::string text(std::size_t field) const {
    return field < fields.count() ? fields.text(field) : std::string();
  }
  [[nodiscard]] bool is_empty(std::size_t field) const {
    return field >= fields.count() || fields.bytes(field).empty();
  }
};

/// A tool export file in memory with its data lines.
class ToolFile {
 public:
  explicit ToolFile(const std::string& bytes) : bytes_(bytes), reader_(bytes) {
    while (reader_.next_data_line()) lines_.push_back({reader_.line_number(), reader_.fields()});
  }
  ToolFile(const ToolFile&) = delete;
  ToolFile& operator=(const ToolFile&) = delete;

  [[nodiscard]] std::string_view bytes() const noexcept { return bytes_; }
  [[nodiscard]] const std::vector<DataLine>& lines() const noexcept { return lines_; }

 private:
  std::string bytes_;
  formats::ExportFile reader_;  // the lines' fields point into it
  std::vector<DataLine> lines_;
};

}  // namespace deskhost::inspect
