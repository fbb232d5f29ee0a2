#pragma once

#include <cstdint>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace deskhost {

/// A text that JSON can't hold, since it isn't UTF-8.
class NotUtf8 : public std::runtime_error {
 public:
  explicit NotUtf8(const std::string& path) : std::runtime_error(path) {}
};

/// Writes one JSON value, two-space indented, as it is told: containers are opened and closed, a value in an
/// object comes behind its key. Equal calls give equal bytes.
class JsonWriter {
 public:
  explicit JsonWriter(std::ostream& out) : out_(out) {}

  void open_object() { open('{', '}'); }
  void open_array() { open('[', ']'); }
  void close();
  void key(std::string_view name);

  void null() { raw("null"); }
  void boolean(bool value) { raw(value ? "true" : "false"); }
  void whole(std::int32_t value) { raw(std::to_string(value)); }
  /// The shortest text that reads back; without a point where the value is whole. It has to be finite.
  void number(double value);
  /// Throws NotUtf8 with the path of the value.
  void text(std::string_view value);

 private:
  struct Level {
    char end;
    std::size_t count = 0;
    std::string key;
  };
  void open(char begin, char end);
  void raw(std::string_view token);
  void next_item();
  void new_line();
  [[nodiscard]] std::string path() const;
  [[nodiscard]] std::string quoted(std::string_view value) const;

  std::ostream& out_;
  std::vector<Level> levels_;
};

}  // namespace deskhost
