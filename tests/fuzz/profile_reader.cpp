// Any bytes are a profile file: every read of it ends, stays inside its buffer and agrees with the others.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/profile_text.h"
#include "platform/text.h"

using namespace platform;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  std::string_view rest = text;
  std::string_view section;
  bool inside = false;
  std::size_t covered = 0;
  while (!rest.empty()) {
    const auto line = profile_text::take_line(rest);
    covered += line.whole.size();
    if (line.kind == profile_text::Line::Kind::header) {
      section = line.name;
      inside = true;
    }
    if (!inside || line.kind != profile_text::Line::Kind::entry) continue;
    // what is in a section can be found there: this entry, or an earlier one of the same names
    const std::string name = from_code_page(section);
    const std::string key = from_code_page(line.name);
    const auto found = profile_text::find(text, name, key);
    if (found && found->data() > line.value.data() && !line.value.empty()) std::abort();
    constexpr std::size_t buffer = 16;
    const std::string value = profile_text::string_value(text, name, key, "", buffer);
    if (to_code_page(value).size() >= buffer) std::abort();
    const std::string list = profile_text::section_entries(text, name, buffer);
    if (to_code_page(list).size() >= buffer) std::abort();
    (void)profile_text::int_value(text, name, key, 0);
    if (covered > 4096) break;  // each entry costs a walk of the whole file
  }
  if (rest.empty() && covered != size) std::abort();
  return 0;
}
