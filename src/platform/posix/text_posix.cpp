#include "platform/posix/text_posix.h"

#include <iconv.h>
#include <langinfo.h>
#include <locale.h>
#include <wctype.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "platform/per_thread.h"
#include "platform/text.h"

namespace platform {
namespace {

constexpr int western_european = 1252;

int code_page() {
  const char* number = std::getenv("QVESPRIT_CODEPAGE");
  const int page = number != nullptr ? std::atoi(number) : 0;
  return page > 0 ? page : western_european;
}

std::string charset_of(int page) {
  constexpr int utf8 = 65001;
  return page == utf8 ? "UTF-8" : "CP" + std::to_string(page);
}

// The code pages whose unused bytes from 0x80 to 0x9f stand for the control characters of the same number.
bool has_controls(int page) {
  return page >= 1250 && page <= 1258;
}

bool is_ascii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// One direction of a conversion, opened when it is first needed and again when the code page has changed.
class Converter {
 public:
  Converter() = default;
  ~Converter() { close(); }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  iconv_t use(int page, bool from_page) {
    if (page_ != page) {
      close();
      const std::string charset = charset_of(page);
      handle_ = from_page ? iconv_open("UTF-8", charset.c_str()) : iconv_open(charset.c_str(), "UTF-8");
      page_ = page;
    }
    if (is_open()) iconv(handle_, nullptr, nullptr, nullptr, nullptr);  // back to the initial shift state
    return handle_;
  }
  [[nodiscard]] bool is_open() const { return handle_ != none(); }

 private:
  // iconv's own mark for "not open" is a number in the shape of a pointer
  static iconv_t none() { return reinterpret_cast<iconv_t>(-1); }  // NOLINT(performance-no-int-to-ptr)
  void close() {
    if (is_open()) iconv_close(handle_);
    handle_ = none();
  }

  iconv_t handle_ = none();
  int page_ = 0;
};

// The bytes of one character at the start of `utf8`, at least one.
std::size_t character_length(std::string_view utf8) {
  const auto lead = static_cast<unsigned char>(utf8.front());
  const std::size_t wanted = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : lead >= 0xc0 ? 2 : 1;
  std::size_t length = 1;
  while (length < std::min(wanted, utf8.size()) &&
         (static_cast<unsigned char>(utf8[length]) & 0xc0) == 0x80) {
    ++length;
  }
  return length;
}

// Converts what can be converted; `stray` puts something in the place of what can't, and says how many bytes
// of the source that was.
template <class Stray>
std::string convert(Converter& converter, int page, bool from_page, std::string_view source, Stray stray) {
  const iconv_t handle = converter.use(page, from_page);
  std::string result;
  char* in = const_cast<char*>(source.data());  // iconv doesn't write there
  std::size_t left = source.size();
  char buffer[1024];
  while (left > 0) {
    char* out = buffer;
    std::size_t room = sizeof buffer;
    bool stuck = true;
    if (converter.is_open()) {
      stuck = iconv(handle, &in, &left, &out, &room) == static_cast<std::size_t>(-1) && errno != E2BIG;
    }
    result.append(buffer, static_cast<std::size_t>(out - buffer));
    if (stuck && left > 0) {
      const std::size_t skipped = stray(std::string_view(in, left), result);
      in += skipped;
      left -= skipped;
    }
  }
  return result;
}

}  // namespace

std::string from_code_page(std::string_view bytes) {
  if (is_ascii(bytes)) return std::string(bytes);
  static PerThread<Converter> converters;
  const int page = code_page();
  return convert(converters.get(), page, true, bytes, [page](std::string_view rest, std::string& result) {
    const auto byte = static_cast<unsigned char>(rest.front());
    if (byte < 0x80) {
      result += rest.front();
    } else if (has_controls(page) && byte < 0xa0) {
      result += {'\xc2', rest.front()};
    } else {
      result += '?';
    }
    return std::size_t{1};
  });
}

std::string to_code_page(std::string_view utf8) {
  if (is_ascii(utf8)) return std::string(utf8);
  static PerThread<Converter> converters;
  const int page = code_page();
  return convert(converters.get(), page, false, utf8, [page](std::string_view rest, std::string& result) {
    const std::size_t length = character_length(rest);
    const bool control =
        length == 2 && rest[0] == '\xc2' && static_cast<unsigned char>(rest[1]) < 0xa0 && has_controls(page);
    const bool ascii = static_cast<unsigned char>(rest[0]) < 0x80;
    result += control ? rest[1] : ascii ? rest[0] : '?';
    return length;
  });
}

namespace {

char32_t next_character(std::string_view& utf8) {
  const std::size_t length = character_length(utf8);
  const auto lead = static_cast<unsigned char>(utf8.front());
  char32_t code = length == 1 ? lead : lead & (0x7fU >> length);
  for (std::size_t i = 1; i < length; ++i) code = code << 6 | (static_cast<unsigned char>(utf8[i]) & 0x3fU);
  utf8.remove_prefix(length);
  return code;
}

// A locale of its own: the process's one is the host's business.
locale_t letters() {
  static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return locale;
}

char32_t lower(char32_t code) {
  if (code < 0x80) return code >= 'A' && code <= 'Z' ? code + ('a' - 'A') : code;
  return letters() != nullptr ? static_cast<char32_t>(towlower_l(static_cast<wint_t>(code), letters()))
                              : code;
}

char32_t upper(char32_t code) {
  if (code < 0x80) return code >= 'a' && code <= 'z' ? code - ('a' - 'A') : code;
  return letters() != nullptr ? static_cast<char32_t>(towupper_l(static_cast<wint_t>(code), letters()))
                              : code;
}

void append_utf8(std::string& text, char32_t code) {
  const auto rest = [code](int shift) { return static_cast<char>(0x80 | ((code >> shift) & 0x3f)); };
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += {static_cast<char>(0xc0 | code >> 6), rest(0)};
  } else if (code < 0x10000) {
    text += {static_cast<char>(0xe0 | code >> 12), rest(6), rest(0)};
  } else {
    text += {static_cast<char>(0xf0 | code >> 18), rest(12), rest(6), rest(0)};
  }
}

}  // namespace

bool same_name(std::string_view a, std::string_view b) {
  while (!a.empty() && !b.empty()) {
    if (lower(next_character(a)) != lower(next_character(b))) return false;
  }
  return a.empty() && b.empty();
}

std::string posix::folded_name(std::string_view utf8) {
  std::string result;
  while (!utf8.empty()) append_utf8(result, lower(next_character(utf8)));
  return result;
}

std::string upper_case(std::string_view utf8) {
  std::string result;
  while (!utf8.empty()) append_utf8(result, upper(next_character(utf8)));
  return result;
}

namespace {

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

// Whether the number is that of a code page in which the letters of ASCII are bytes, as a file needs it.
bool is_code_page(const std::string& number) {
  constexpr std::size_t most_digits = 5;
  const bool is_number = number.find_first_not_of("0123456789") == std::string::npos;
  const int page = is_number && number.size() <= most_digits ? std::atoi(number.c_str()) : 0;
  if (page == 0 || charset_of(page) == "UTF-8") return false;
  Converter converter;
  converter.use(page, false);
  const auto refused = [](std::string_view rest, std::string&) { return rest.size(); };
  return converter.is_open() && convert(converter, page, false, "A", refused) == "A";
}

}  // namespace

char decimal_sign() {
  const char* own = std::getenv("QVESPRIT_DECIMAL");
  if (own != nullptr && *own != '\0') return *own;
  for (const char* variable : {"LC_ALL", "LC_NUMERIC", "LANG"}) {
    const char* name = std::getenv(variable);
    if (name == nullptr || *name == '\0') continue;
    const locale_t numbers = newlocale(LC_NUMERIC_MASK, name, nullptr);
    if (numbers == nullptr) return '.';
    const char* radix = nl_langinfo_l(RADIXCHAR, numbers);
    const char sign = std::strlen(radix) == 1 ? *radix : '.';
    freelocale(numbers);
    return sign;
  }
  return '.';
}

std::optional<WrongSetting> wrong_text_setting() {
  const std::string page = variable("QVESPRIT_CODEPAGE");
  if (!page.empty() && !is_code_page(page)) {
    return WrongSetting{"QVESPRIT_CODEPAGE", page,
                        "the number of a code page of 8 bits, such as 1252, 1250 or 932"};
  }
  const std::string sign = variable("QVESPRIT_DECIMAL");
  const bool is_sign = sign.size() == 1 && std::ispunct(static_cast<unsigned char>(sign.front())) != 0;
  if (!sign.empty() && (!is_sign || sign.find_first_of("+-;") != std::string::npos)) {
    return WrongSetting{"QVESPRIT_DECIMAL", sign, "one sign, such as . or ,"};
  }
  return std::nullopt;
}

}  // namespace platform
