#include "deskhost/document/json_writer.h"

#include <array>
#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>

namespace deskhost {
namespace {

constexpr double exact_wholes = 9007199254740992.0;  // 2^53

}  // namespace

void JsonWriter::close() {
  const Level level = levels_.back();
  levels_.pop_back();
  if (level.count > 0) new_line();
  out_ << level.end;
}

void JsonWriter::key(std::string_view name) {
  next_item();
  levels_.back().key = name;
  out_ << quoted(name) << ": ";
}

void JsonWriter::number(double value) {
  if (value == 0 && std::signbit(value)) return raw("-0.0");
  if (value == std::trunc(value) && std::abs(value) < exact_wholes) {
    return raw(std::to_string(static_cast<std::int64_t>(value)));
  }
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  std::string_view shortest(digits.data(), static_cast<std::size_t>(end - digits.data()));
  // Without a point or an exponent it would read as a whole number, of which there are fewer.
  const bool is_plain = shortest.find_first_of(".e") == std::string_view::npos;
  raw(is_plain ? std::string(shortest) + ".0" : std::string(shortest));
}

void JsonWriter::text(std::string_view value) {
  raw(quoted(value));
}

void JsonWriter::open(char begin, char end) {
  raw(std::string_view(&begin, 1));
  levels_.push_back({end, 0, {}});
}

void JsonWriter::raw(std::string_view token) {
  if (!levels_.empty() && levels_.back().end == ']') next_item();
  out_ << token;
}

void JsonWriter::next_item() {
  if (levels_.back().count++ > 0) out_ << ',';
  new_line();
}

void JsonWriter::new_line() {
  out_ << '\n';
  for (std::size_t i = 0; i < levels_.size(); ++i) out_ << "  ";
}

std::string JsonWriter::path() const {
  std::string path;
  for (const Level& level : levels_) {
    if (level.end == ']') {
      path += '[' + std::to_string(level.count - 1) + ']';
    } else {
      path += (path.empty() ? "" : ".") + level.key;
    }
  }
  return path;
}

std::string JsonWriter::quoted(std::string_view value) const {
  try {
    return nlohmann::json(value).dump();
  } catch (const nlohmann::json::type_error&) {
    throw NotUtf8(path());
  }
}

}  // namespace deskhost
