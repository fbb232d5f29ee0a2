#include "deskhost/system/message_watch_win32.h"

#include <gtest/gtest.h>

#include "platform/message_line.h"

namespace deskhost {
namespace {

using platform::Icon;

TEST(MessageWatch, ReportsAndClosesEachBox) {
  close_and_report_messages();
  struct Case {
    const char* text;
    const char* title;
    Icon icon;
  };
  for (const Case& c : {Case{"Enviorementvariable :A not set!", "QVEsprit", Icon::none},
                        Case{"a\n\"b\" & ä刀", "T & ü", Icon::information},
                        Case{"a\n\"b\" & ä刀", "T & ü", Icon::exclamation}, Case{"", "T", Icon::none}}) {
    ::testing::internal::CaptureStderr();
    platform::message_box(c.text, c.title, c.icon);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), platform::message_line(c.text, c.title, c.icon));
  }
}

}  // namespace
}  // namespace deskhost
