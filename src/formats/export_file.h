#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "formats/export_fields.h"
#include "formats/text_lines.h"

namespace formats {

/// Whether a line (without its end) is one tool: not blank, no comment, no version line.
bool is_data_line(std::string_view line) noexcept;

/// Where the fields of one line begin and end; no text is copied.
class LineFields {
 public:
  /// Splits at every ";", up to `field_count` fields; `line` has to outlive the views given out.
  void split(std::string_view line) noexcept;

  /// The fields found, at most `field_count`.
  [[nodiscard]] std::size_t count() const noexcept { return count_; }
  /// The bytes of a field, `index` from 0 and below `count()`.
  [[nodiscard]] std::string_view bytes(std::size_t index) const noexcept {
    const std::uint32_t begin = index == 0 ? 0 : ends_[index - 1] + 1;
    return {line_.data() + begin, ends_[index] - begin};
  }
  /// The line as a whole, with what stands behind the last field.
  [[nodiscard]] std::string_view line() const noexcept { return line_; }
  /// The field as UTF-8.
  [[nodiscard]] std::string text(std::size_t index) const;

 private:
  static constexpr std::size_t overshoot = 16;  // places are written eight at a time

  std::string_view line_;
  std::size_t count_ = 0;
  std::array<std::uint32_t, field_count + overshoot> ends_;  // offset of the ";" behind each field
};

/// The tool export file, in memory as it was read: 8-bit text whose lines end at CR or CR LF.
class ExportFile {
 public:
  explicit ExportFile(std::string bytes) : lines_(std::move(bytes)) {}

  /// Moves on to the next data line and splits it; blank, comment and version lines are passed over. False at
  /// the end of the file.
  bool next_data_line() noexcept;
  [[nodiscard]] const LineFields& fields() const noexcept { return fields_; }
  /// The number of that line in the file, from 1.
  [[nodiscard]] std::size_t line_number() const noexcept { return lines_.number(); }

 private:
  TextLines lines_;
  LineFields fields_;
};

}  // namespace formats
