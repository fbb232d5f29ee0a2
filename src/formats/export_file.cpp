#include "formats/export_file.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "platform/text.h"

namespace formats {
namespace {

constexpr std::size_t block = 8;

/// For each set of ";" among eight bytes (bit 0: the first byte): where they stand, and how many.
struct Places {
  std::array<std::array<std::uint32_t, block>, 256> at{};
  std::array<std::uint8_t, 256> count{};
};

constexpr Places places = [] {
  Places table;
  for (std::size_t set = 0; set < 256; ++set) {
    for (std::uint32_t place = 0; place < block; ++place) {
      if ((set >> place & 1U) != 0) table.at[set][table.count[set]++] = place;
    }
  }
  return table;
}();

// One bit for each ";" among eight bytes, the first byte lowest.
std::size_t semicolons(const char* bytes) noexcept {
  constexpr std::uint64_t all_but_top = 0x7f7f7f7f7f7f7f7fU;
  std::uint64_t word = 0;
  if constexpr (std::endian::native == std::endian::little) {
    std::memcpy(&word, bytes, sizeof word);
  } else {
    for (std::size_t i = block; i-- > 0;) word = word << 8U | static_cast<unsigned char>(bytes[i]);
  }
  word ^= 0x3b3b3b3b3b3b3b3bU;  // ";" becomes 0
  const std::uint64_t zeros = ~(((word & all_but_top) + all_but_top) | word | all_but_top);
  return (zeros >> 7U) * 0x0102040810204080U >> 56U;  // the eight top bits, gathered in one byte
}

}  // namespace

bool is_data_line(std::string_view line) noexcept {
  line = platform::trimmed(line);
  return !line.empty() && line[0] != '*' && !line.starts_with("FileVersion:");
}

void LineFields::split(std::string_view line) noexcept {
  line_ = line;
  const char* const bytes = line.data();
  const auto size = static_cast<std::uint32_t>(line.size());
  std::uint32_t* end = ends_.data();
  const std::uint32_t* const enough = end + field_count;
  std::uint32_t at = 0;
  // A short line has a ";" every few bytes, and how many a block has can't be foreseen: eight places are
  // written whether they are there or not, and only the end moves by their number.
  for (; at + block <= size && end < enough; at += block) {
    const std::size_t set = semicolons(bytes + at);
    const auto places_in_block = places.at[set];  // a copy, which nothing that is written can be
    for (std::size_t i = 0; i < block; ++i) end[i] = at + places_in_block[i];
    end += places.count[set];
  }
  for (; at < size && end < enough; ++at) {
    if (bytes[at] == ';') *end++ = at;
  }
  if (end < enough) *end++ = size;
  count_ = std::min(static_cast<std::size_t>(end - ends_.data()), field_count);
}

std::string LineFields::text(std::size_t index) const {
  return platform::from_code_page(bytes(index));
}

bool ExportFile::next_data_line() noexcept {
  while (const std::optional<std::string_view> line = lines_.next()) {
    if (is_data_line(*line)) {
      fields_.split(*line);
      return true;
    }
  }
  return false;
}

}  // namespace formats
