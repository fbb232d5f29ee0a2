#include "platform/win32/text_win32.h"

#include <windows.h>

#include <algorithm>

#include "platform/text.h"

namespace platform {
namespace {

constexpr wchar_t replacement = 0xfffd;

std::wstring to_wide(UINT page, std::string_view bytes) {
  const int size = static_cast<int>(bytes.size());
  std::wstring result(static_cast<std::size_t>(MultiByteToWideChar(page, 0, bytes.data(), size, nullptr, 0)),
                      L'\0');
  MultiByteToWideChar(page, 0, bytes.data(), size, result.data(), static_cast<int>(result.size()));
  return result;
}

// The page of Unicode itself takes neither flags nor a character to stand in.
std::string from_wide(UINT page, std::wstring_view text) {
  const DWORD flags = page == CP_UTF8 ? 0 : WC_NO_BEST_FIT_CHARS;
  const char* const stand_in = page == CP_UTF8 ? nullptr : "?";
  const int size = static_cast<int>(text.size());
  const auto convert = [&](char* out, int room) {
    return WideCharToMultiByte(page, flags, text.data(), size, out, room, stand_in, nullptr);
  };
  std::string result(static_cast<std::size_t>(convert(nullptr, 0)), '\0');
  convert(result.data(), static_cast<int>(result.size()));
  return result;
}

template <class Char>
bool is_ascii(std::basic_string_view<Char> text) {
  return std::ranges::all_of(text, [](Char c) { return static_cast<std::make_unsigned_t<Char>>(c) < 0x80; });
}

// No 8-bit page has a character of two units, and it is one character that becomes a "?".
std::wstring without_pairs(std::wstring_view text) {
  std::wstring result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool pair = i + 1 < text.size() && IS_SURROGATE_PAIR(text[i], text[i + 1]);
    result += pair ? replacement : text[i];
    if (pair) ++i;
  }
  return result;
}

}  // namespace

// Nearly all texts of a host are ASCII, and there are hundreds for each tool: these take no detour.
std::wstring win32::wide(std::string_view utf8) {
  return is_ascii(utf8) ? std::wstring(utf8.begin(), utf8.end()) : to_wide(CP_UTF8, utf8);
}

std::string win32::utf8(std::wstring_view wide) {
  if (!is_ascii(wide)) return from_wide(CP_UTF8, wide);
  std::string result(wide.size(), '\0');
  std::ranges::transform(wide, result.begin(), [](wchar_t c) { return static_cast<char>(c); });
  return result;
}

std::string from_code_page(std::string_view bytes) {
  if (is_ascii(bytes)) return std::string(bytes);
  std::wstring text = to_wide(CP_ACP, bytes);
  std::ranges::replace(text, replacement, L'?');
  return win32::utf8(text);
}

std::string to_code_page(std::string_view utf8) {
  if (is_ascii(utf8)) return std::string(utf8);
  if (GetACP() == CP_UTF8) return std::string(utf8);
  return from_wide(CP_ACP, without_pairs(win32::wide(utf8)));
}

bool same_name(std::string_view a, std::string_view b) {
  const std::wstring left = win32::wide(a);
  const std::wstring right = win32::wide(b);
  return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                              static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

std::string upper_case(std::string_view utf8) {
  std::wstring text = win32::wide(utf8);
  const int size = static_cast<int>(text.size());
  LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, text.data(), size, text.data(), size, nullptr,
                nullptr, 0);
  return win32::utf8(text);
}

char decimal_sign() {
  constexpr int room = 4;
  wchar_t sign[room] = {};
  const int length = GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, LOCALE_SDECIMAL, sign, room);
  return length == 2 && sign[0] < 0x80 ? static_cast<char>(sign[0]) : '.';
}

std::optional<WrongSetting> wrong_text_setting() {
  return std::nullopt;  // they are the system's own
}

}  // namespace platform
