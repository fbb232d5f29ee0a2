#include "automation/number.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

#include "automation/failure.h"

namespace automation {
namespace {

std::atomic<char> the_decimal_sign{'.'};
thread_local DecimalSign* innermost = nullptr;

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

// The length of the longest run "digits [. digits]" at the start that holds a digit, 0 where there is none.
std::size_t decimal_length(std::string_view text) {
  std::size_t at = 0;
  std::size_t digits = 0;
  bool point = false;
  for (; at < text.size(); ++at) {
    if (is_digit(text[at])) {
      ++digits;
    } else if (text[at] == '.' && !point) {
      point = true;
    } else {
      break;
    }
  }
  return digits == 0 ? 0 : at;
}

// The length of "e [sign] digits" at the start, 0 where it isn't complete.
std::size_t exponent_length(std::string_view text) {
  if (text.empty() || (text[0] != 'e' && text[0] != 'E')) return 0;
  std::size_t at = 1;
  if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
  const std::size_t first = at;
  while (at < text.size() && is_digit(text[at])) ++at;
  return at == first ? 0 : at;
}

std::string_view trim_blanks(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

bool take_sign(std::string_view& text) {
  if (text.empty() || (text[0] != '+' && text[0] != '-')) return false;
  const bool negative = text[0] == '-';
  text.remove_prefix(1);
  return negative;
}

// Whether the number in these digits (with a point, with an exponent) is less than 1. Told by where its first
// digit that isn't 0 stands, as it may be beyond what any type holds.
bool is_below_one(std::string_view digits) {
  const std::size_t e = std::min(digits.find_first_of("eE"), digits.size());
  const std::string_view mantissa = digits.substr(0, e);
  std::string_view power = digits.substr(std::min(e + 1, digits.size()));
  if (power.starts_with('+')) power.remove_prefix(1);
  std::int32_t exponent = 0;
  const auto read = std::from_chars(power.data(), power.data() + power.size(), exponent);
  if (read.ec == std::errc::result_out_of_range) return power.starts_with('-');
  const auto first = static_cast<std::int64_t>(std::min(mantissa.find_first_of("123456789"), e));
  const auto point = static_cast<std::int64_t>(std::min(mantissa.find('.'), e));
  return point - first + exponent <= 0;
}

std::optional<double> convert(std::string_view digits, bool negative) {
  double value = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (result.ec == std::errc::result_out_of_range) {
    // Too small to tell from nothing is 0; too large is no number that could be kept.
    if (!is_below_one(digits)) return std::nullopt;
    value = 0;
  } else if (result.ec != std::errc()) {
    return std::nullopt;
  }
  return negative ? -value : value;
}

// Drops the zeros at the end of a fraction, and the point with the last of them.
std::string without_trailing_zeros(std::string digits) {
  if (digits.find('.') == digits.npos) return digits;
  digits.erase(digits.find_last_not_of('0') + 1);
  if (digits.back() == '.') digits.pop_back();
  return digits;
}

}  // namespace

std::optional<double> read_number(std::string_view text) noexcept {
  text = trim_blanks(text);
  const bool negative = take_sign(text);
  const std::size_t digits = decimal_length(text);
  if (digits == 0) return std::nullopt;
  if (digits + exponent_length(text.substr(digits)) != text.size()) return std::nullopt;
  return convert(text, negative);
}

double numeric_prefix(std::string_view text) noexcept {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  const bool negative = take_sign(text);
  const std::size_t digits = decimal_length(text);
  if (digits == 0) return 0;
  const std::optional<double> value = convert(text.substr(0, digits), negative);
  return value.value_or(negative ? -std::numeric_limits<double>::max() : std::numeric_limits<double>::max());
}

double round_half_even(double value) noexcept {
  const double below = std::floor(value);
  const double rest = value - below;
  if (rest != 0.5) return rest < 0.5 ? below : below + 1;
  return std::fmod(below, 2) == 0 ? below : below + 1;
}

std::int32_t to_int32(double value) {
  const double rounded = round_half_even(value);
  if (!(rounded >= -2147483648.0 && rounded <= 2147483647.0)) throw Failure(Error::overflow);
  return static_cast<std::int32_t>(rounded);
}

std::int16_t to_int16(double value) {
  const double rounded = round_half_even(value);
  if (!(rounded >= -32768.0 && rounded <= 32767.0)) throw Failure(Error::overflow);
  return static_cast<std::int16_t>(rounded);
}

std::string plain_text(double value) {
  if (!std::isfinite(value)) return std::isnan(value) ? "NaN" : value > 0 ? "INF" : "-INF";
  if (value == 0) return "0";
  std::array<char, 512> buffer{};
  char* const first = buffer.data();
  char* const last = first + buffer.size();
  // Rounded to 15 digits first: the digits decide between the two forms, not the value behind them.
  const char* end = std::to_chars(first, last, value, std::chars_format::scientific, 14).ptr;
  const std::string_view scientific(first, static_cast<std::size_t>(end - first));
  const std::size_t e = scientific.find('e');
  int exponent = 0;
  const char* digits = scientific.data() + e + (scientific[e + 1] == '+' ? 2 : 1);
  std::from_chars(digits, end, exponent);

  std::string text;
  if (exponent >= 15 || exponent < -4) {
    text = without_trailing_zeros(std::string(scientific.substr(0, e)));
    text += exponent < 0 ? "E-" : "E+";
    const int magnitude = std::abs(exponent);
    if (magnitude < 10) text += '0';
    text += std::to_string(magnitude);
  } else {
    end = std::to_chars(first, last, value, std::chars_format::fixed, 14 - exponent).ptr;
    text = without_trailing_zeros(std::string(first, static_cast<std::size_t>(end - first)));
  }
  if (const std::size_t point = text.find('.'); point != text.npos) text[point] = decimal_sign();
  return text;
}

std::string shortest_text(double value) {
  if (value == 0) return "0";
  std::array<char, 512> buffer{};
  const auto result =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed);
  return {buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data())};
}

std::string rounded_text(double value, int decimals) {
  const double scale = std::pow(10, decimals);
  const double scaled = value * scale;
  return shortest_text(std::isfinite(scaled) ? round_half_even(scaled) / scale : value);
}

void set_decimal_sign(char sign) noexcept {
  the_decimal_sign = sign;
}
char decimal_sign() noexcept {
  if (innermost == nullptr) return the_decimal_sign;
  if (innermost->sign_ == 0) innermost->sign_ = innermost->ask_();
  return innermost->sign_;
}

DecimalSign::DecimalSign(char (*ask)()) noexcept : ask_(ask), outer_(std::exchange(innermost, this)) {}

DecimalSign::~DecimalSign() {
  innermost = outer_;
}

}  // namespace automation
