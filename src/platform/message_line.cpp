#include "platform/message_line.h"

#include <cstdio>

namespace platform {
namespace {

const char* name_of(Icon icon) {
  switch (icon) {
    case Icon::information:
      return "information";
    case Icon::exclamation:
      return "exclamation";
    default:
      return "none";
  }
}

std::string json_text(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      result += {'\\', c};
    } else if (c == '\n') {
      result += "\\n";
    } else if (c == '\r') {
      result += "\\r";
    } else if (c == '\t') {
      result += "\\t";
    } else if (static_cast<unsigned char>(c) < 0x20) {
      char code[8];
      std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned>(c));
      result += code;
    } else {
      result += c;
    }
  }
  return result + "\"";
}

}  // namespace

std::string message_line(std::string_view text, std::string_view title, Icon icon) {
  return "message box: {\"title\":" + json_text(title) + ",\"text\":" + json_text(text) + ",\"icon\":\"" +
         name_of(icon) + "\"}\n";
}

}  // namespace platform
