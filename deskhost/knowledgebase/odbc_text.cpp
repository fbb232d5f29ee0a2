#include "deskhost/knowledgebase/odbc_text.h"

#include <cstdint>

namespace deskhost {
namespace {

static_assert(sizeof(SQLWCHAR) == 2);

constexpr std::uint32_t replacement = 0xFFFD;

/// Takes one code point off the front of `text`, which isn't empty.
std::uint32_t take_code_point(std::string_view& text) {
  const auto first = static_cast<unsigned char>(text[0]);
  text.remove_prefix(1);
  if (first < 0x80) return first;
  const int more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
  if (first < 0xC2 || first > 0xF4 || text.size() < static_cast<std::size_t>(more)) return replacement;
  std::uint32_t point = first & (0x3FU >> more);
  for (int i = 0; i < more; ++i) {
    const auto next = static_cast<unsigned char>(text[static_cast<std::size_t>(i)]);
    if ((next & 0xC0U) != 0x80U) return replacement;
    point = point << 6U | (next & 0x3FU);
  }
  constexpr std::uint32_t least[] = {0, 0x80, 0x800, 0x10000};
  if (point < least[more] || point > 0x10FFFF || (point >= 0xD800 && point < 0xE000)) return replacement;
  text.remove_prefix(static_cast<std::size_t>(more));
  return point;
}

void append(std::string& text, std::uint32_t point) {
  const auto byte = [&](std::uint32_t value) { text += static_cast<char>(value); };
  const auto tail = [&](unsigned shift) { byte(0x80U | (point >> shift & 0x3FU)); };
  if (point < 0x80) {
    byte(point);
  } else if (point < 0x800) {
    byte(0xC0U | point >> 6U);
    tail(0);
  } else if (point < 0x10000) {
    byte(0xE0U | point >> 12U);
    tail(6);
    tail(0);
  } else {
    byte(0xF0U | point >> 18U);
    tail(12);
    tail(6);
    tail(0);
  }
}

}  // namespace

OdbcText to_odbc(std::string_view utf8) {
  OdbcText result;
  result.reserve(utf8.size());
  while (!utf8.empty()) {
    const std::uint32_t point = take_code_point(utf8);
    if (point < 0x10000) {
      result += static_cast<SQLWCHAR>(point);
    } else {
      result += static_cast<SQLWCHAR>(0xD800U + ((point - 0x10000U) >> 10U));
      result += static_cast<SQLWCHAR>(0xDC00U + ((point - 0x10000U) & 0x3FFU));
    }
  }
  return result;
}

std::string from_odbc(const SQLWCHAR* text, std::size_t units) {
  std::string result;
  result.reserve(units);
  for (std::size_t i = 0; i < units; ++i) {
    std::uint32_t point = text[i];
    const bool high = point >= 0xD800 && point < 0xDC00;
    if (high && i + 1 < units && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000) {
      point = 0x10000U + ((point - 0xD800U) << 10U) + (text[++i] - 0xDC00U);
    } else if (point >= 0xD800 && point < 0xE000) {
      point = replacement;
    }
    append(result, point);
  }
  return result;
}

}  // namespace deskhost
