#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace deskhost {

/// A text that isn't JSON; line and column count from 1.
class JsonSyntaxError : public std::runtime_error {
 public:
  JsonSyntaxError(const std::string& what, std::size_t line_number, std::size_t column_number)
      : std::runtime_error(what), line(line_number), column(column_number) {}
  std::size_t line;
  std::size_t column;
};

/// JSON as it stands in `text`: an object keeps its keys in order, and a key that comes twice is there twice.
/// Throws JsonSyntaxError, also for a text that isn't UTF-8 and for one that nests more than 1000 levels.
nlohmann::ordered_json parse_json(std::string_view text);

/// The line, from 1, at which the value with that path ("Tools[3].Name") begins or its key stands; the last
/// one where a key comes twice, 0 where there is none. It reads the whole text: for errors only.
std::size_t line_of(std::string_view text, std::string_view path);

}  // namespace deskhost
