#pragma once

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

#include "automation/failure.h"
#include "support/system.h"

/// Where Wine, on which the tests for Windows run, does otherwise than the contract says. Each difference is
/// held to what is told here, so that one that goes is noticed.
namespace known_differences {

/// What a test asks (a file's content) and what it gets.
struct Difference {
  std::string_view asked;
  std::string_view given;
};

/// Letters beyond ASCII are told apart by their case in names, and of a default that is all blanks one stays.
inline constexpr Difference reading[] = {
    {"[T]\r\nk\xc4=1\r\n", "d"},
    {"   ", " "},
};

/// The file is laid out anew: all lines end in CR LF, blank ones go, and a new entry stands behind the
/// comments that follow its section.
inline constexpr Difference writing[] = {
    {"; c\n[U]\na=1", "; c\r\n[U]\r\na=1\r\n[T]\r\nk=1\r\n"},
    {"[T]\na=1\n; about b\n\n[U]\nk=2\n", "[T]\r\na=1\r\n; about b\r\nk=1\r\n[U]\r\nk=2\r\n"},
    {"[T]\n\n[U]\n", "[T]\r\nk=1\r\n[U]\r\n"},
    {"[T]\ra=1\rb=2", "[T]\r\na=1\r\nb=2\r\nk=1\r\n"},
    {"[T]\njunk\n\n", "[T]\r\njunk\r\nk=1\r\n"},
    {"[T]\nk=0\nk=5\n[T]\nk=6", "[T]\r\nk=\r\nk=5\r\n[T]\r\nk=6\r\n"},
    {"[T]\nk=0", "[T]\r\nk=\xe4=;[x]\r\n"},
};

/// The same; comments go with the entries, and those of a second section of the name go too.
inline constexpr Difference replacing[] = {
    {"[T]\n;1\na=1\n;2\nb=2\njunk\n\n[U]\nx=1\n", "[T]\r\nc=3\r\nd=4\r\n[U]\r\nx=1\r\n"},
    {"[T]\na=1", "[T]\r\n"},
    {"[U]\nx=1", "[U]\r\nx=1\r\n[T]\r\na=1\r\n"},
    {"[T]\na=1\n[T]\nb=2\n", "[T]\r\nc=3\r\n[T]\r\n"},
    {"[T]\na=1=2\n; c\nb=\n[U]\n", "[T]\na=1=2\nb=\nc=3\n[U]\n"},
};

/// The superuser, who runs the tests, writes a profile file that is read-only.
inline const bool writes_read_only_profiles = testing_support::on_wine;

/// A quote that isn't closed is no start of a program's name.
inline const automation::Error starting_behind_an_open_quote =
    testing_support::on_wine ? automation::Error::file_not_found : automation::Error::none;

/// The content of a file that was laid out anew, as it was meant.
inline std::string with_plain_line_ends(std::string text) {
  if (testing_support::on_wine) std::erase(text, '\r');
  return text;
}

/// The cosine of a right angle, which is no 0 in 64 bits, as the runtime library of the Windows compiler has
/// it.
inline const char* const cosine_of_a_right_angle =
    testing_support::on_windows ? "6.12303176911189E-17" : "6.12323399573677E-17";

/// What is to be expected here where `contract` is what the contract says.
template <std::size_t Count>
std::string_view expected(const Difference (&differences)[Count], std::string_view asked,
                          std::string_view contract) {
  const auto* found = std::ranges::find(differences, asked, &Difference::asked);
  return testing_support::on_wine && found != std::end(differences) ? found->given : contract;
}

}  // namespace known_differences
