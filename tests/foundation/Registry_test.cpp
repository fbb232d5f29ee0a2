#include "foundation/Registry.h"

#include <gtest/gtest.h>

#include "platform/registry.h"
#include "tests/platform/temp_folder.h"

namespace {

using testing_support::TempFolder;
using namespace std::string_literals;

class RegistryModule : public ::testing::Test {
 protected:
  const std::int16_t user_ = 1;
  TempFolder folder_;
  std::unique_ptr<testing_support::Otherwise> hive_ = testing_support::with_own_registry(folder_.file(""));
};

TEST_F(RegistryModule, SavesATextUnderAKeyThatItMakes) {
  const std::string key = "Software\\D.P.Technology\\Esprit\\QVEsprit";
  EXPECT_EQ(Registry::GetRegistryValue(user_, key, "tbTop"), "");
  for (const char* text : {"120", "", "ä\"\\"}) {
    Registry::SaveRegistryString(user_, key, "tbTop", text);
    EXPECT_EQ(Registry::GetRegistryValue(user_, key, "tbTop"), text);
  }
  EXPECT_EQ(Registry::GetRegistryValue(2, key, "tbTop"), "");
}

TEST_F(RegistryModule, ShowsAValueByItsKind) {
  constexpr platform::RegistryRoot user = 0x80000001U;
  ASSERT_TRUE(platform::registry_create_sub_key(user, "", "K"));
  struct Case {
    platform::RegistryValue value;
    const char* text;
  };
  for (const Case& c : {Case{{4, "\5\0\0\0"s}, "5"}, Case{{4, "\xfe\xff\xff\xff"s}, "-2"},
                        Case{{3, "\x0a\xff"}, "0A FF "}, Case{{7, "ab\0c\0\0"s}, "ab"},
                        Case{{2, "%P%\0"s}, "%P%"}, Case{{1, "ab"}, "ab"}, Case{{0xb, "a"}, ""}}) {
    ASSERT_TRUE(platform::registry_write(user, "K", "n", c.value));
    EXPECT_EQ(Registry::GetRegistryValue(user_, "K", "n"), c.text) << c.value.kind;
  }
  EXPECT_EQ(Registry::GetRegistryValue(user_, "K", "none"), "");
}

TEST_F(RegistryModule, TakesTokensOffAText) {
  std::string text = "a\\\\b";
  EXPECT_EQ(Registry::NextToken(text, "\\"), "a");
  EXPECT_EQ(Registry::NextToken(text, "\\"), "");
  EXPECT_EQ(Registry::NextToken(text, "\\"), "b");
  EXPECT_EQ(text, "");
}

}  // namespace
