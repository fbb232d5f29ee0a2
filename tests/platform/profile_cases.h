#pragma once

#include <cstddef>
#include <string_view>

/// What a read of a profile file gives. These are data alone, so that the system's own functions can be held
/// to them where there are such.
namespace profile_cases {

/// Bytes of the code page (Windows-1252), `text` and the expected value included.
struct StringCase {
  std::string_view text;
  const char* section;
  const char* key;
  const char* default_text;
  std::size_t size;
  const char* expected;
};

using namespace std::string_view_literals;

inline constexpr StringCase string_cases[] = {
    // names: case, blanks, the first of two wins
    {"[Default]\r\nTurretID=2\r\n", "Default", "TurretID", "1", 255, "2"},
    {"[DEFAULT]\r\nturretid=2\r\n", "default", "TurretId", "1", 255, "2"},
    {"[T]\r\n \t k \t = \t v w \t \r\n", "T", "k", "d", 255, "v w"},
    {"  [T]\r\nk=1\r\n", "T", "k", "d", 255, "1"},
    {"[T]\r\nk=1\r\nk=2\r\n", "T", "k", "d", 255, "1"},
    {"[T]\r\na=1\r\n[T]\r\nk=2\r\n", "T", "k", "d", 255, "d"},
    {"[T]\r\nk=1\r\n[U]\r\nk=2\r\n", "U", "k", "d", 255, "2"},
    {"[T]\r\nk\xc4=1\r\n", "T", "K\xe4", "d", 255, "1"},
    {"[T]\r\nkk=1\r\n", "T", "k", "d", 255, "d"},
    {"k=1\r\n[T]\r\n", "T", "k", "d", 255, "d"},
    // headers
    {"[T] junk\r\nk=1\r\n", "T", "k", "d", 255, "1"},
    {"[T]\r\nk=1\r\n[U\r\nj=2\r\n", "U", "j", "d", 255, "d"},
    {"[T]\r\nk=1\r\n[U\r\nj=2\r\n", "T", "j", "d", 255, "2"},
    {"[]\r\nk=1\r\n", "T", "k", "d", 255, "d"},
    // what an equals sign and a semicolon do
    {"[T]\r\nk=a=b\r\n", "T", "k", "d", 255, "a=b"},
    {"[T]\r\nk=a;b\r\n", "T", "k", "d", 255, "a;b"},
    {"[T]\r\n;k=1\r\nk=2\r\n", "T", "k", "d", 255, "2"},
    {"[T]\r\n ; k=1\r\n", "T", "k", "d", 255, "d"},
    {"[T]\r\nk=\r\n", "T", "k", "d", 255, ""},
    {"[T]\r\nk= \t \r\n", "T", "k", "d", 255, ""},
    // quotes
    {"[T]\r\nk=\" a \"\r\n", "T", "k", "d", 255, " a "},
    {"[T]\r\nk=' a '\r\n", "T", "k", "d", 255, " a "},
    {"[T]\r\nk=\"\"a\"\"\r\n", "T", "k", "d", 255, "\"a\""},
    {"[T]\r\nk=\"a\r\n", "T", "k", "d", 255, "\"a"},
    {"[T]\r\nk=\"a'\r\n", "T", "k", "d", 255, "\"a'"},
    {"[T]\r\nk=\"\r\n", "T", "k", "d", 255, "\""},
    {"[T]\r\nk=\"\"\r\n", "T", "k", "d", 255, ""},
    {"[T]\r\nk=a\"b\"\r\n", "T", "k", "d", 255, "a\"b\""},
    // line ends
    {"[T]\nk=1\nj=2", "T", "j", "d", 255, "2"},
    {"[T]\rk=1\rj=2\r", "T", "j", "d", 255, "2"},
    {"[T]\r\n\r\n\r\nk=1", "T", "k", "d", 255, "1"},
    {"\n[T]\r\rk=1", "T", "k", "d", 255, "1"},
    // defaults
    {"", "T", "k", "d", 255, "d"},
    {"[T]\r\n", "T", "k", "  d e  ", 255, "  d e"},
    {"[T]\r\n", "T", "k", "   ", 255, ""},
    {"[T]\r\n", "T", "k", "\td\t", 255, "\td\t"},
    {"[T]\r\n", "U", "k", "", 255, ""},
    // the buffer
    {"[T]\r\nk=abcdef\r\n", "T", "k", "d", 4, "abc"},
    {"[T]\r\nk=\"abcdef\"\r\n", "T", "k", "d", 4, "abc"},
    {"[T]\r\nk=abc\r\n", "T", "k", "d", 4, "abc"},
    {"[T]\r\nk=\xe4\xf6\xfc\xdf\r\n", "T", "k", "d", 4, "\xe4\xf6\xfc"},
    {"[T]\r\n", "T", "k", "abcdef", 4, "abc"},
    {"[T]\r\nk=abc\r\n", "T", "k", "d", 1, ""},
};

/// `text` is the value of key "k" in section "T".
struct IntCase {
  const char* value;
  int default_number;
  int expected;
};

inline constexpr IntCase int_cases[] = {
    {"42", 7, 42},       {"-1", 7, -1},
    {"+1", 7, 1},        {"42A", 7, 42},
    {"B42", 7, 0},       {"", 7, 7},
    {"0x1F", 7, 31},     {"  12  ", 7, 12},
    {"\"12\"", 7, 12},   {"1.9", 7, 1},
    {"-", 7, 0},         {"- 1", 7, 0},
    {"40000", 7, 40000}, {"-2147483648", 7, -2147483647 - 1},
    {"0", 7, 0},         {"0x", 7, 0},
    {"00012", -7, 12},   {"\"\"", -7, -7},
};

/// The list with "|" for NUL, its own closing NUL left out.
struct SectionCase {
  std::string_view text;
  const char* section;
  std::size_t size;
  const char* expected;
};

inline constexpr SectionCase section_cases[] = {
    {"[T]\r\n a = 1 \r\n;c=2\r\n\r\nb=\r\n[U]\r\nx=1\r\n[T]\r\nd=4\r\n", "t", 99, "a=1|b=|"},
    {"[T]\r\na=\" 1 \"\r\na=2\r\n", "T", 99, "a=\" 1 \"|a=2|"},
    {"[T]\r\na=1\r\nb=2\r\n", "T", 9, "a=1|b=2|"},
    {"[T]\r\na=1\r\nb=2\r\n", "T", 8, "a=1|b=|"},
    {"[T]\r\na=1\r\nb=2\r\n", "T", 6, "a=1|"},
    {"[T]\r\n[U]\r\na=1\r\n", "T", 99, ""},
    {"[U]\r\na=1\r\n", "T", 99, ""},
};

}  // namespace profile_cases
