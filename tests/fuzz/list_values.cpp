// The values of a tool list, made from any text and any number: a document's name without its ending, a
// material's code, a time, an identifier.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "automation/number.h"
#include "formats/tool_identity.h"
#include "foundation/mDatei.h"
#include "platform/message_box.h"
#include "toollist/material_code.h"

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

void check_time(double time) {
  const std::string text = automation::rounded_text(time, 2);
  require(text.find_first_of(";\r\n,") == std::string::npos);
  if (time > -1e12 && time < 1e12) {  // beyond, two neighbours may lie further apart
    const auto back = automation::read_number(text);
    require(back && *back - time <= 0.00501 && time - *back <= 0.00501);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool quiet = (platform::set_message_sink([](auto, auto, auto) {}), true);
  static_cast<void>(quiet);
  double time = 0;
  if (size >= sizeof time) std::memcpy(&time, data, sizeof time);
  if (time == time && time - time == 0) check_time(time);

  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::string stem = mDatei::RemoveExtension(text);
  require(text.starts_with(stem) && text.find('.', stem.size() + 1) == std::string::npos);

  const std::string code = mQuorvexList::ExtractMaterialCode(text);
  require(code.empty() ||
          (code.find('}') == std::string::npos && text.find(code + "}") != std::string::npos));

  const std::string_view ident = tool_identity::behind_first_hash(text);
  require(text.ends_with(ident));
  if (const auto number = automation::read_number(text)) {
    require(*number - *number == 0);  // finite
  }
  return 0;
}
