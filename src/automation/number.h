#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Everything that turns numbers into text and text into numbers.
namespace automation {

/// The number that `text` reads as in whole: blanks at the ends, one sign, digits with one ".", an exponent
/// ("e" or "E", signed). Nothing for any other text, an empty one, or a number beyond the range of a double.
std::optional<double> read_number(std::string_view text) noexcept;

/// The number at the start of `text`: leading blanks, one sign, digits, one "."; reading stops at the first
/// character that can't go on. 0 where there is none; no exponents.
double numeric_prefix(std::string_view text) noexcept;

/// Halves go to the even neighbour.
double round_half_even(double value) noexcept;

/// `value` rounded half to even; throws Failure(overflow) beyond the range and for what isn't a number.
std::int32_t to_int32(double value);
std::int16_t to_int16(double value);

/// The plain text form: 15 significant digits, exponent form ("1E+15", "1E-05") from 1E+15 up and below
/// 0.0001, the `decimal_sign`.
std::string plain_text(double value);

/// The shortest text that reads back as `value`: no exponent, always a point.
std::string shortest_text(double value);

/// The `shortest_text` of `value` rounded to so many decimals: with two, a hundred times it is rounded half
/// to even. So a half is what is typed as one: 2.675 gives 2.68, 12.345 gives 12.34.
std::string rounded_text(double value, int decimals);

/// The sign between whole and fraction in `plain_text`: that of the innermost `DecimalSign`, or else what was
/// set; "." at the start.
char decimal_sign() noexcept;
void set_decimal_sign(char sign) noexcept;

/// For as long as it lives, the sign on its thread is what `ask` says, who is asked once, when the sign is
/// first needed.
class DecimalSign {
 public:
  explicit DecimalSign(char (*ask)()) noexcept;
  ~DecimalSign();
  DecimalSign(const DecimalSign&) = delete;
  DecimalSign& operator=(const DecimalSign&) = delete;

 private:
  friend char decimal_sign() noexcept;

  char (*ask_)();
  char sign_ = 0;  // 0 until it was asked for
  DecimalSign* outer_;
};

}  // namespace automation
