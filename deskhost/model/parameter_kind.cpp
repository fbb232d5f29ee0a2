#include "deskhost/model/parameter_kind.h"

#include <cmath>
#include <cstdint>
#include <string>

#include "automation/number.h"
#include "deskhost/model/desk_object.h"

namespace deskhost::catalogue {

using automation::Error;
using automation::Failure;
using automation::Value;
using enum Kind;

namespace {

/// A number, or a text that reads as one in whole; 0 is nobody's reading of an empty value.
double number_in(const Value& value) {
  if (!value.is_number() && !value.is(Value::Kind::Text)) throw Failure(Error::type_mismatch);
  return finite_number(value);
}

bool is_whole(double number) {
  return number == std::trunc(number) && number >= INT32_MIN && number <= INT32_MAX;
}

Value code_in(const Value& value, bool whole_only) {
  if (value.is(Value::Kind::I4)) return value;
  if (value.is_number()) {
    const double number = number_in(value);
    if (is_whole(number)) return static_cast<std::int32_t>(number);
    if (whole_only) throw Failure(Error::type_mismatch);
    return automation::shortest_text(number);
  }
  const std::string text = value.to_text();
  const auto number = automation::read_number(text);
  if (number && is_whole(*number)) return static_cast<std::int32_t>(*number);
  if (whole_only) throw Failure(Error::type_mismatch);
  return text;
}

}  // namespace

Value converted(Kind kind, const Value& value) {
  switch (kind) {
    case text:
      return value.to_text();
    case number:
      return number_in(value);
    case whole:
      return automation::to_int32(number_in(value));
    case code:
      return code_in(value, false);
    case orientation_code:
      return code_in(value, true);
  }
  throw Failure(Error::internal_error);
}

std::string_view wanted(Kind kind) noexcept {
  switch (kind) {
    case text:
    case code:
      return "a text";
    case number:
      return "a decimal number";
    case whole:
      return "a whole number of 32 bits";
    case orientation_code:
      return "the whole number of an orientation";
  }
  return {};
}

std::string_view hint(Kind kind) noexcept {
  switch (kind) {
    case text:
    case code:
      return "give a text";
    case number:
      return "give a decimal number with a point, such as 12.5";
    case whole:
      return "give a whole number from -2147483648 to 2147483647";
    case orientation_code:
      return "give the whole number of an orientation, such as 13";
  }
  return {};
}

}  // namespace deskhost::catalogue
