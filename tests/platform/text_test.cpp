#include "platform/text.h"

#include <gtest/gtest.h>

#include "platform/environment.h"
#include "tests/platform/temp_folder.h"

namespace platform {
namespace {

using testing_support::WithVariable;

TEST(Text, PassesThroughTheCodePage) {
  for (const auto& [bytes, utf8] : {std::pair("abc", "abc"), std::pair("\x80\xe4\xff", "€äÿ"),
                                    std::pair("\x81\x8d\x8f\x90\x9d", "\u0081\u008d\u008f\u0090\u009d")}) {
    EXPECT_EQ(from_code_page(bytes), utf8);
    EXPECT_EQ(to_code_page(utf8), bytes);
  }
}

TEST(Text, PutsAQuestionMarkWhereThereIsNoCounterpart) {
  EXPECT_EQ(to_code_page("aąb刀c😀d"), "a?b?c?d");
  EXPECT_EQ(to_code_page("ä\xff\xc3"), "\xe4??");  // not UTF-8
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

TEST(Text, TakesTheDecimalSignFromTheNumberFormat) {
  for (const char sign : {',', '.'}) {
    const auto format = testing_support::with_decimal_sign(sign);
    EXPECT_EQ(decimal_sign(), sign);
  }
}

TEST(Text, ReadsVariablesByWayOfTheCodePage) {
  const WithVariable set("QVESPRIT_TEST", "C:\\Müller\\刀");
  EXPECT_EQ(environment("QVESPRIT_TEST"), "C:\\Müller\\?");
  EXPECT_EQ(environment("QVESPRIT_TEST_UNSET"), "");
}

}  // namespace
}  // namespace platform
