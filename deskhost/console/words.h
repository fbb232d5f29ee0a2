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

/// The words of a command: its options, and what stands in front of, between and behind them.
struct GivenWords {
  std::vector<GivenOption> options;
  std::vector<std::string> others;
};

/// Whether a word stands for an option; "-" alone names a standard file.
inline bool looks_like_option(std::string_view word) {
  return word.size() > 1 && word.starts_with('-');
}

enum class OptionsStand { in_front, anywhere };

/// Takes the options apart: "--name VALUE", "--name=VALUE", where they stand in front up to the first word
/// that is none; behind "--" there are no more. Throws WrongUse for an unknown one, one that comes twice, a
/// value that is missing, empty or too many; an unknown one comes with `hint`.
GivenWords split_options(std::span<const Option> options, Words words, OptionsStand where, const char* hint);

template <class Rows>
std::vector<Option> options_of(const Rows& rows) {
  std::vector<Option> options;
  for (const auto& row : rows) options.push_back(row.option);
  return options;
}

/// Takes the options in one after the other and gives the other words.
template <class Target, class Rows>
std::vector<std::string> take_options(Target& target, const Rows& rows, Words words, OptionsStand where,
                                      const char* hint) {
  GivenWords split = split_options(options_of(rows), words, where, hint);
  for (const GivenOption& given : split.options) {
    const auto& row = rows[given.row];
    try {
      row.take(target, given.value);
    } catch (const WrongUse& wrong) {
      throw WrongUse(std::string(row.option.name) + ": " + wrong.what(), wrong.hint);
    }
  }
  return std::move(split.others);
}

/// Takes the options from the front of `words`, for a command whose own help tells of them.
template <class Target, class Rows>
void take_options(Target& target, const Rows& rows, Words& words) {
  const auto others = take_options(target, rows, words, OptionsStand::in_front, "--help tells the options");
  words = words.last(others.size());
}

}  // namespace deskhost
