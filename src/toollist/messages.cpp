#include "toollist/messages.h"

#include "foundation/global.h"

namespace mQuorvexList {

std::string message_text(const Skipping& skipping, std::string_view key, std::string_view default_text) {
  const auto zone = [&](auto&& statement) { skipping.statement(statement); };
  return global::open_texts("MSG", zone).GetString(std::string(key), std::string(default_text));
}

}  // namespace mQuorvexList
