#include "toollist/material_code.h"

#include "automation/number.h"
#include "foundation/global.h"
#include "toollist/messages.h"

namespace mQuorvexList {

std::string ExtractMaterialCode(std::string_view text) {
  Skipping skipping;
  skipping.begin();
  const std::size_t open = text.find('{');
  const std::size_t close = text.find('}');
  const std::size_t first = open == text.npos ? 0 : open + 1;
  std::string code;
  if (close != text.npos && close >= first) code = text.substr(first, close - first);
  if (!automation::read_number(code)) {
    skipping.statement([&] {
      global::show_message(message_text(skipping, "noZephaMaterialCode",
                                        "not the right ZephaMaterialCode in the interfacefile!"));
    });
  }
  return code;
}

}  // namespace mQuorvexList
