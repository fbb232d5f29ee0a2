#pragma once

#include <string>
#include <string_view>

namespace formats {

/// One data line of the knowledge-base exchange file.
struct ExchangeLine {
  std::string StandardName;
  std::string ClassName;
  std::string ConditionName;
  std::string OperationName;
  std::string CutterMaterialName;
  std::string MaterialColumn1;
  std::string MaterialColumn2;
  std::string MaterialColumn3;
  std::string Units;
  double ValueA = 0;
  double ValueB = 0;
  double ValueC = 0;
  double ValueD = 0;
  std::string Note;

  /// Exactly "metric"; every other text means imperial.
  [[nodiscard]] bool is_metric() const { return Units == "metric"; }
  /// The name under which the material is shown: columns of 10, 20 and up to 20 characters. Throws Failure
  /// where one of the first two is longer than its column.
  [[nodiscard]] std::string material_name() const;
};

/// Only a "*" in the very first position makes a comment.
bool is_comment(std::string_view line) noexcept;

/// Takes the line (8-bit, without its end) apart; throws Failure where it has fewer than 18 fields.
ExchangeLine parse_exchange_line(std::string_view line);

}  // namespace formats
