#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The form of a profile file, apart from where the file lies and how it is read. Texts of a file are bytes
/// of the code page, names are UTF-8.
namespace platform::profile_text {

/// One line of a file, without the characters that end it.
struct Line {
  enum class Kind { other, header, entry };
  Kind kind = Kind::other;
  std::string_view name;   ///< of the section or the key, without the blanks around it
  std::string_view value;  ///< of an entry, without the blanks around it
};

/// Takes the next line off `rest`: up to CR, LF, CR LF or the end. A line with a ";" first is a comment, one
/// with "[" first and a "]" behind it a header, one with "=" an entry; the rest is `other`.
Line take_line(std::string_view& rest);

/// Whether a name of the file is the wanted one.
bool names_match(std::string_view in_file, std::string_view wanted);

/// The text without one pair of quotes, single or double, around it.
std::string_view without_quotes(std::string_view value);

/// The value of the first such key in the first such section of `text`, as it stands there; a view into it.
std::optional<std::string_view> find(std::string_view text, std::string_view section, std::string_view key);

/// What a caller of GetPrivateProfileStringA gets (UTF-8) when the file's content is `text`.
std::string string_value(std::string_view text, std::string_view section, std::string_view key,
                         std::string_view default_text, std::size_t size);

}  // namespace platform::profile_text
