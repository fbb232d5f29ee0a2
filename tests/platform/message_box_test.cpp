#include "platform/message_box.h"

#include <gtest/gtest.h>

#include "platform/message_line.h"

namespace platform {
namespace {

TEST(MessageBox, GoesToTheSinkOrIsALine) {
  std::string seen;
  set_message_sink([&](std::string_view text, std::string_view title, Icon) {
    seen = std::string(title) + ":" + std::string(text);
  });
  message_box("text", "title");
  set_message_sink({});
  EXPECT_EQ(seen, "title:text");
  EXPECT_EQ(message_line("a \"b\"\r\n\\c\x01ä", "T", Icon::exclamation),
            "message box: {\"title\":\"T\",\"text\":\"a "
            "\\\"b\\\"\\r\\n\\\\c\\u0001ä\",\"icon\":\"exclamation\"}\n");
}

}  // namespace
}  // namespace platform
