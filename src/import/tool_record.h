#pragma once

#include <string>

#include "automation/value.h"
#include "formats/export_file.h"

namespace mQuorvex {

using formats::field_count;
using formats::LineFields;
using enum formats::Field;

/// The working record of a line: its fields, with what is worked out before the document is touched. Borrows
/// the line's fields.
struct ToolRecord {
  explicit ToolRecord(const LineFields& line);

  /// The field as it stands in the file.
  [[nodiscard]] std::string text(std::size_t field) const { return fields->text(field); }
  /// An empty field becomes "0".
  [[nodiscard]] std::string text_or_zero(std::size_t field) const;

  const LineFields* fields;
  /// The knowledge base's identifier of the cutting material.
  std::string material;
  /// The value for LatheToolOrientation: text as it stands, or a 16-bit number where a code was decoded.
  automation::Value lathe_tool_orientation;
};

}  // namespace mQuorvex
