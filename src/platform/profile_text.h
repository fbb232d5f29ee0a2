#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The form of a profile file, apart from where the file lies and how it is read. Texts of a file are bytes
/// of the code page, names are UTF-8.
namespace platform::profile_text {

/// One line of a file.
struct Line {
  enum class Kind { blank, comment, header, entry, junk };
  Kind kind = Kind::blank;
  std::string_view name;   ///< of the section or the key, without the blanks around it
  std::string_view value;  ///< of an entry, without the blanks around it
  std::string_view whole;  ///< the line as it stands, with the characters that end it
  std::string_view end;    ///< CR, LF, CR LF, or nothing at the file's end
};

/// Takes the next line off `rest`: up to CR, LF, CR LF or the end. A line with a ";" first is a comment, one
/// with "[" first and a "]" behind it a header, one with "=" an entry; what else isn't
/// blank is junk.
Line take_line(std::string_view& rest);

/// A wanted name as a file can hold it: what the code page lacks is "?".
class Name {
 public:
  explicit Name(std::string_view wanted);
  /// Whether a name of the file is this one, regardless of case.
  [[nodiscard]] bool is(std::string_view in_file) const;

 private:
  std::string text_;
};

/// The text without one pair of quotes, single or double, around it.
std::string_view without_quotes(std::string_view value);

/// The value of the first such key in the first such section of `text`, as it stands there; a view into it.
std::optional<std::string_view> find(std::string_view text, std::string_view section, std::string_view key);

/// What the reading functions of platform/profile.h give when the file's content is `text`.
std::string string_value(std::string_view text, std::string_view section, std::string_view key,
                         std::string_view default_text, std::size_t size);
std::int32_t int_value(std::string_view text, std::string_view section, std::string_view key,
                       std::int32_t default_number);
std::string section_entries(std::string_view text, std::string_view section, std::size_t size);

/// Whether the names and the value can stand in such a file and be read back from it.
bool is_entry(std::string_view section, std::string_view key, std::string_view value);

/// The same for a section and a list of its entries, each ended by a NUL.
bool are_entries(std::string_view section, std::string_view entries);

/// The text with the entry set, or without it where there is no value. The rest stays as it is; a new entry
/// goes behind the last one of its section, a new section to the end. Nothing where the names or the value
/// can't stand in such a file.
std::optional<std::string> with_entry(std::string_view text, std::string_view section, std::string_view key,
                                      std::optional<std::string_view> value);

/// The text with the section's entries replaced by `entries` (each ended by a NUL; an empty one ends the
/// list); its comments and blank lines stay. Nothing where they can't stand there.
std::optional<std::string> with_entries(std::string_view text, std::string_view section,
                                        std::string_view entries);

}  // namespace platform::profile_text
