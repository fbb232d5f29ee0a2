#pragma once

#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace formats {

/// The lines of an exchange file, in memory as it was read: 8-bit text whose lines end at CR or CR LF. A lone
/// LF is a character of its line, and a line break at the very end makes no further line.
class TextLines {
 public:
  explicit TextLines(std::string bytes) : bytes_(std::move(bytes)) {}

  /// The next line, without its end; nothing behind the last one. The view lives as long as this object.
  [[nodiscard]] std::optional<std::string_view> next() noexcept {
    if (at_ >= bytes_.size()) return std::nullopt;
    const char* const begin = bytes_.data() + at_;
    const std::size_t rest = bytes_.size() - at_;
    // NOLINTNEXTLINE(bugprone-not-null-terminated-result): bytes, not a C string
    const auto* const end = static_cast<const char*>(std::memchr(begin, '\r', rest));
    const std::size_t length = end == nullptr ? rest : static_cast<std::size_t>(end - begin);
    at_ += length;
    if (end != nullptr) ++at_;
    if (end != nullptr && at_ < bytes_.size() && bytes_[at_] == '\n') ++at_;
    ++number_;
    return std::string_view(begin, length);
  }
  /// The number of the line that `next` gave last, from 1.
  [[nodiscard]] std::size_t number() const noexcept { return number_; }

 private:
  std::string bytes_;
  std::size_t at_ = 0;
  std::size_t number_ = 0;
};

}  // namespace formats
