// Any bytes are a line of the knowledge-base exchange file: it is read as its fields stand, or refused, and
// no value of it ends the text of a statement that it is put into.

#include "formats/exchange_line.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "automation/failure.h"
#include "knowledgebase/knowledge_base_access.h"
#include "platform/text.h"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

std::size_t characters(std::string_view text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  constexpr std::ptrdiff_t fields = 18;
  try {
    const formats::ExchangeLine line = formats::parse_exchange_line(text);
    require(std::ranges::count(text, ';') >= fields - 1);
    require(line.StandardName == platform::from_code_page(text.substr(0, text.find(';'))));
    const std::string name = line.material_name();
    constexpr std::size_t narrowest = 10 + 3 + 20 + 3;
    require(characters(name) >= narrowest && characters(name) <= narrowest + 20);
    const std::array<std::string, 5> pieces{"a='", name, "' and b='", line.ClassName, "'"};
    const std::string select = KBM::statement(pieces);
    require(std::ranges::count(select, '\'') == 4);
  } catch (const automation::Failure&) {
    // a line that is too short or too wide, or holds an apostrophe
  }
  return 0;
}
