#include <gtest/gtest.h>

#include "platform/text.h"
#include "tests/platform/temp_folder.h"

namespace platform {
namespace {

using testing_support::WithVariable;

TEST(TextOnPosix, PassesThroughTheNamedCodePage) {
  struct Case {
    const char* page;
    const char* bytes;
    const char* utf8;
  };
  for (const Case& c : {Case{"1250", "\x81\xb9", "\u0081ą"}, Case{"1254", "\xfd\x9e", "ı\u009e"},
                        Case{"932", "\x83\x5c", "ソ"}, Case{"936", "\xb5\xb6", "刀"},
                        Case{"949", "\xb0\xf8", "공"}, Case{"950", "\xa4\x4d", "刀"}}) {
    const WithVariable page("QVESPRIT_CODEPAGE", c.page);
    EXPECT_EQ(from_code_page(c.bytes), c.utf8) << c.page;
    EXPECT_EQ(to_code_page(c.utf8), c.bytes) << c.page;
  }
}

TEST(TextOnPosix, KnowsNoCharacterOfAnUnknownCodePage) {
  const WithVariable unknown("QVESPRIT_CODEPAGE", "4711");
  EXPECT_EQ(to_code_page("aä"), "a?");
  EXPECT_EQ(from_code_page("a\xe4"), "a?");
  const WithVariable half("QVESPRIT_CODEPAGE", "932");
  EXPECT_EQ(from_code_page("a\x83"), "a?");
}

TEST(TextOnPosix, TakesTheDecimalSignFromTheLocale) {
  const WithVariable locale("LC_ALL", "C");
  EXPECT_EQ(decimal_sign(), '.');
}

}  // namespace
}  // namespace platform
