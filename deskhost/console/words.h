#pragma once

#include <charconv>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "deskhost/session/session.h"

namespace deskhost {

using Words = std::span<const std::string>;

/// "; did you mean "open"?" where one of the names is a slip of the finger away from `word`, else nothing.
std::string did_you_mean(std::string_view word, const std::vector<std::string_view>& names);

/// The whole number that the text is. Throws WrongUse for any other text and for one below `lowest`.
template <class Number>
Number whole_number(const std::string& text, Number lowest) {
  Number number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || rest != end || number < lowest) {
    const bool any = lowest < 0;
    throw WrongUse("\"" + text + "\" is no number" + (any ? "" : " from " + std::to_string(lowest)),
                   "give a whole number");
  }
  return number;
}

/// An option as a command line, help, man page and completion know it.
struct Option {
  const char* name;   ///< "--kb"
  const char* value;  ///< what its value is called; null for a switch
  const char* help;
};

template <class Target>
struct OptionRow {
  Option option;
  /// Takes the value in; throws WrongUse for one that it refuses.
  void (*take)(Target& target, const std::string& value);
};

struct GivenOption {
  std::size_t row;
  std::string value;
};

/// Takes the options from the front of `words`: "--name VALUE", "--name=VALUE", up to the first word that is
/// none, or behind "--". Throws WrongUse for an unknown one, one that comes twice, a value that is missing or
/// too many.
std::vector<GivenOption> split_options(std::span<const Option> options, Words& words);

template <class Rows>
std::vector<Option> options_of(const Rows& rows) {
  std::vector<Option> options;
  for (const auto& row : rows) options.push_back(row.option);
  return options;
}

template <class Target, class Rows>
void take_options(Target& target, const Rows& rows, Words& words) {
  for (const GivenOption& given : split_options(options_of(rows), words)) {
    const auto& row = rows[given.row];
    try {
      row.take(target, given.value);
    } catch (const WrongUse& wrong) {
      throw WrongUse(std::string(row.option.name) + ": " + wrong.what(), wrong.hint);
    }
  }
}

}  // namespace deskhost
