#include "import/lathe_orientation.h"

#include <array>
#include <cstdint>

#include "automation/number.h"

namespace mQuorvex {
namespace {

struct PositionCode {
  const char* code;
  std::int16_t orientation;
};

// The X pair runs the other way round than the Z and Y pairs.
constexpr std::array<PositionCode, 16> position_codes{{
    {"Z+", 1},
    {"Z-", 2},
    {"X-", 3},
    {"X+", 4},
    {"Y+", 6},
    {"Y-", 7},
    {"1V", 11},
    {"2V", 12},
    {"3V", 13},
    {"4V", 14},
    {"1H", 15},
    {"2H", 16},
    {"3H", 17},
    {"4H", 18},
    {"A", 23},
    {"RA", 24},
}};

}  // namespace

automation::Value decode_lathe_orientation(const std::string& code, const std::string& otherwise) {
  if (code.empty() || code == "0") return otherwise;
  if (automation::read_number(code)) return code;
  for (const PositionCode& row : position_codes) {
    if (code == row.code) return row.orientation;
  }
  return code;
}

}  // namespace mQuorvex
