#pragma once

#include <string_view>

#include "automation/value.h"

namespace deskhost::catalogue {

/// What values a parameter takes.
enum class Kind {
  text,
  number,            ///< 64-bit float: lengths, angles
  whole,             ///< 32-bit whole number
  code,              ///< 32-bit whole number, or a text that doesn't read as one
  orientation_code,  ///< 32-bit whole number only
};

/// `value` as a parameter of that kind keeps it. Throws Failure for a value that the kind refuses.
automation::Value converted(Kind kind, const automation::Value& value);

/// What a value of a kind has to be ("a decimal number"), and what to do about one that isn't.
std::string_view wanted(Kind kind) noexcept;
std::string_view hint(Kind kind) noexcept;

}  // namespace deskhost::catalogue
