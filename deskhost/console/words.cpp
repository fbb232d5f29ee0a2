#include "deskhost/console/words.h"

#include <algorithm>
#include <numeric>
#include <optional>

namespace deskhost {
namespace {

/// How many characters have to be put in, taken out, replaced or swapped with their neighbour.
std::size_t distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> before(b.size() + 1), last(b.size() + 1), row(b.size() + 1);
  std::iota(last.begin(), last.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, replaced});
      const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (swapped) row[j] = std::min(row[j], before[j - 2] + 1);
    }
    before.swap(last);
    last.swap(row);
  }
  return last[b.size()];
}

std::size_t row_of(std::span<const Option> options, std::string_view name, const char* hint) {
  const auto row = std::ranges::find(options, name, [](const Option& o) { return std::string_view(o.name); });
  if (row != options.end()) return static_cast<std::size_t>(row - options.begin());
  std::vector<std::string_view> names;
  for (const Option& option : options) names.emplace_back(option.name);
  throw WrongUse("unknown option \"" + std::string(name) + "\"" + did_you_mean(name, names), hint);
}

void check_value(const Option& option, const std::optional<std::string>& value) {
  const std::string name = option.name;
  if (option.value == nullptr) {
    if (value) throw WrongUse(name + " takes no value", "give it alone");
    return;
  }
  if (value && !value->empty()) return;
  throw WrongUse("the value of " + name + (value ? " is empty" : " is missing"),
                 "usage: " + name + " " + option.value);
}

}  // namespace

std::string did_you_mean(std::string_view word, const std::vector<std::string_view>& names) {
  constexpr std::size_t most = 2;
  std::size_t least = std::min(most, word.size() / 2);
  std::string_view nearest;
  for (const std::string_view name : names) {
    const std::size_t away = distance(word, name);
    if (away > least || (away == least && !nearest.empty())) continue;
    least = away;
    nearest = name;
  }
  return nearest.empty() ? std::string() : "; did you mean \"" + std::string(nearest) + "\"?";
}

GivenWords split_options(std::span<const Option> options, Words words, OptionsStand where, const char* hint) {
  GivenWords split;
  const auto next = [&words] {
    const std::string& word = words.front();
    words = words.subspan(1);
    return word;
  };
  while (!words.empty()) {
    if (!looks_like_option(words.front())) {
      if (where == OptionsStand::in_front) break;
      split.others.push_back(next());
      continue;
    }
    const std::string word = next();
    if (word == "--") break;
    const std::size_t sign = std::min(word.find('='), word.size());
    const std::size_t row = row_of(options, word == "-h" ? "--help" : word.substr(0, sign), hint);
    const Option& option = options[row];
    if (std::ranges::find(split.options, row, &GivenOption::row) != split.options.end()) {
      throw WrongUse(std::string(option.name) + " comes twice", "leave one out");
    }
    std::optional<std::string> value;
    if (sign < word.size()) {
      value = word.substr(sign + 1);
    } else if (option.value != nullptr && !words.empty()) {
      value = next();
    }
    check_value(option, value);
    split.options.push_back({row, value.value_or("")});
  }
  split.others.insert(split.others.end(), words.begin(), words.end());
  return split;
}

}  // namespace deskhost
