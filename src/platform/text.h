#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// The system's 8-bit code page, its number format, and its sameness of names.
namespace platform {

/// Both ways are total: a byte or a character that has no counterpart becomes "?". The code page is the
/// system's active one; on posix Windows-1252 unless QVESPRIT_CODEPAGE names another by its number.
std::string from_code_page(std::string_view bytes);
std::string to_code_page(std::string_view utf8);

/// Two names (UTF-8) that differ in nothing but the case of their letters.
bool same_name(std::string_view a, std::string_view b);

/// The text with its small letters turned into capitals (UTF-8).
std::string upper_case(std::string_view utf8);

/// The text without the characters of `blanks` at its ends; empty where it has no others.
std::string_view trimmed(std::string_view text, std::string_view blanks = " ") noexcept;

/// Whether a byte begins a character of UTF-8; the others go on with the one before.
constexpr bool begins_character(char byte) noexcept {
  return (static_cast<unsigned char>(byte) & 0xc0U) != 0x80U;
}
/// The number of characters (UTF-8).
std::size_t character_count(std::string_view utf8) noexcept;

/// The decimal sign of the system's number format; on posix QVESPRIT_DECIMAL or that of the locale which the
/// environment names.
char decimal_sign();

/// A variable of the environment by which code page or number format are set and that means neither.
struct WrongSetting {
  std::string variable, value;
  std::string wanted;  ///< what could stand there
};
std::optional<WrongSetting> wrong_text_setting();

}  // namespace platform
