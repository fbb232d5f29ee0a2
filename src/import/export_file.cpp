#include "import/export_file.h"

#include <bit>
#include <cstring>

#include "platform/text.h"

namespace mQuorvex {
namespace {

bool is_data(std::string_view line) {
  const std::size_t first = line.find_first_not_of(' ');
  if (first == line.npos) return false;
  line.remove_prefix(first);
  return line[0] != '*' && !line.starts_with("FileVersion:");
}

// One bit for each ";" among eight bytes, the first byte lowest.
std::uint64_t semicolons(const char* bytes) {
  constexpr std::uint64_t all_but_top = 0x7f7f7f7f7f7f7f7fU;
  std::uint64_t word = 0;
  std::memcpy(&word, bytes, sizeof word);
  if constexpr (std::endian::native == std::endian::big) {
    std::uint64_t swapped = 0;
    for (int i = 0; i < 8; ++i) swapped = swapped << 8 | (word >> (8 * i) & 0xff);
    word = swapped;
  }
  word ^= 0x3b3b3b3b3b3b3b3bU;  // ";" becomes 0
  const std::uint64_t zeros = ~(((word & all_but_top) + all_but_top) | word | all_but_top);
  return (zeros >> 7) * 0x0102040810204080U >> 56;  // gathers the eight top bits in one byte
}

}  // namespace

void LineFields::split(std::string_view line) noexcept {
  line_ = line;
  const char* const bytes = line.data();
  const auto size = static_cast<std::uint32_t>(line.size());
  std::uint32_t* end = ends_.data();
  std::uint32_t* const enough = end + field_count;
  std::uint32_t at = 0;
  for (; at + block <= size && end < enough; at += block) {
    std::uint64_t found = 0;
    for (std::uint32_t i = 0; i < block; i += 8) found |= semicolons(bytes + at + i) << i;
    // Eight at a time whether they are there or not: how many follow is a branch that can't be foreseen.
    const int hits = std::popcount(found);
    for (int written = 0; written < hits; written += 8) {
      for (int i = 0; i < 8; ++i) {
        end[written + i] = at + static_cast<std::uint32_t>(std::countr_zero(found));
        found &= found - 1;
      }
    }
    end += hits;
  }
  for (; at < size && end < enough; ++at) {
    if (bytes[at] == ';') *end++ = at;
  }
  if (end < enough) *end++ = size;
  count_ = end < enough ? static_cast<std::size_t>(end - ends_.data()) : field_count;
}

std::string LineFields::text(std::size_t index) const {
  return platform::from_code_page(bytes(index));
}

bool ExportFile::next_data_line() noexcept {
  while (at_ < bytes_.size()) {
    const char* const begin = bytes_.data() + at_;
    const std::size_t rest = bytes_.size() - at_;
    const auto* const end = static_cast<const char*>(std::memchr(begin, '\r', rest));
    const std::size_t length = end == nullptr ? rest : static_cast<std::size_t>(end - begin);
    at_ += length;
    if (end != nullptr) ++at_;
    if (end != nullptr && at_ < bytes_.size() && bytes_[at_] == '\n') ++at_;
    const std::string_view line(begin, length);
    if (is_data(line)) {
      fields_.split(line);
      return true;
    }
  }
  return false;
}

}  // namespace mQuorvex
