#include "platform/text.h"

#include <gtest/gtest.h>

#include "platform/environment.h"
#include "tests/platform/temp_folder.h"

namespace platform {
namespace {

using testing_support::WithVariable;

TEST(Text, PassesThroughTheCodePage) {
  struct Case {
    const char* page;
    const char* bytes;
    const char* utf8;
  };
  for (const Case& c : {Case{"1252", "abc", "abc"}, Case{"1252", "\x80\xe4\xff", "€äÿ"},
                        Case{"1252", "\x81\x8d\x8f\x90\x9d", "\u0081\u008d\u008f\u0090\u009d"},
                        Case{"1250", "\x81\xb9", "\u0081ą"}, Case{"1254", "\xfd\x9e", "ı\u009e"},
                        Case{"932", "\x83\x5c", "ソ"}, Case{"936", "\xb5\xb6", "刀"},
                        Case{"949", "\xb0\xf8", "공"}, Case{"950", "\xa4\x4d", "刀"}}) {
    const WithVariable page("QVESPRIT_CODEPAGE", c.page);
    EXPECT_EQ(from_code_page(c.bytes), c.utf8) << c.page;
    EXPECT_EQ(to_code_page(c.utf8), c.bytes) << c.page;
  }
}

TEST(Text, PutsAQuestionMarkWhereThereIsNoCounterpart) {
  EXPECT_EQ(to_code_page("aąb刀c😀d"), "a?b?c?d");
  EXPECT_EQ(to_code_page("ä\xff\xc3"), "\xe4??");  // not UTF-8
  const WithVariable unknown("QVESPRIT_CODEPAGE", "4711");
  EXPECT_EQ(to_code_page("aä"), "a?");
  EXPECT_EQ(from_code_page("a\xe4"), "a?");
  const WithVariable half("QVESPRIT_CODEPAGE", "932");
  EXPECT_EQ(from_code_page("a\x83"), "a?");
}

TEST(Text, KeepsLongTexts) {
  std::string utf8;
  std::string bytes;
  for (int i = 0; i < 5000; ++i) {
    utf8 += "xąö";
    bytes += "x?\xf6";
  }
  EXPECT_EQ(to_code_page(utf8), bytes);
  EXPECT_EQ(from_code_page(bytes).size(), 4U * 5000);
}

TEST(Text, NamesAreTheSameRegardlessOfCase) {
  EXPECT_TRUE(same_name("Turret", "tURRET"));
  EXPECT_TRUE(same_name("ÄÖ", "äö"));
  EXPECT_FALSE(same_name("a", "ab"));
  EXPECT_FALSE(same_name("a[", "a{"));
  EXPECT_FALSE(same_name("ä", "a"));
  EXPECT_EQ(upper_case("aZ1äß刀ж😀"), "AZ1Äß刀Ж😀");
}

TEST(Text, TakesTheDecimalSignFromTheEnvironment) {
  const WithVariable locale("LC_ALL", "C");
  EXPECT_EQ(decimal_sign(), '.');
  const WithVariable own("QVESPRIT_DECIMAL", ",");
  EXPECT_EQ(decimal_sign(), ',');
}

TEST(Text, ReadsVariablesByWayOfTheCodePage) {
  const WithVariable set("QVESPRIT_TEST", "C:\\Müller\\刀");
  EXPECT_EQ(environment("QVESPRIT_TEST"), "C:\\Müller\\?");
  EXPECT_EQ(environment("QVESPRIT_TEST_UNSET"), "");
}

}  // namespace
}  // namespace platform
