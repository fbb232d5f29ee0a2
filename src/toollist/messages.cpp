#include "toollist/messages.h"

#include "foundation/global.h"

namespace mQuorvexList {

std::string message_text(const Skipping& skipping, std::string_view key, std::string_view default_text) {
  clsIniFile& reader = global::text_reader();
  skipping.statement([&] { reader.FileName(global::GetTextFileName()); });
  skipping.statement([&] { reader.SectionName("MSG"); });
  return reader.GetString(std::string(key), std::string(default_text));
}

}  // namespace mQuorvexList
