#include "platform/registry.h"

#include <gtest/gtest.h>

#include "tests/platform/temp_folder.h"

namespace platform {
namespace {

using testing_support::TempFolder;
using namespace std::string_literals;

constexpr RegistryRoot user = 0x80000001U;

class OwnRegistry : public ::testing::Test {
 protected:
  TempFolder folder_;
  std::unique_ptr<testing_support::Otherwise> hive_ = testing_support::with_own_registry(folder_.file(""));
};

TEST_F(OwnRegistry, KeepsEveryKindOfValue) {
  ASSERT_TRUE(registry_create_sub_key(user, "", "Software"));
  ASSERT_TRUE(registry_create_sub_key(user, "Software", "Q [V] ä"));
  const RegistryValue values[] = {{1, "plain\0"s},
                                  {1, ""},
                                  {1, "a\"b\\c\\"},
                                  {1, "two\r\nlines"},
                                  {1, "in\0side"s},
                                  {1, "\x81\xe4\0"s},
                                  {2, "%PATH%\0"s},
                                  {3, ""},
                                  {3, std::string(100, '\xab')},
                                  {4, "\x05\0\0\x80"s},
                                  {4, "\x05"},
                                  {7, "a\0b\0\0"s},
                                  {0, "x"},
                                  {0xdeadbeef, "x"}};
  for (const RegistryValue& value : values) {
    ASSERT_TRUE(registry_write(user, "software\\q [v] Ä", "A \"name\"\\", value));
    ASSERT_TRUE(registry_write(user, "Software", "", value));
    for (const auto& read :
         {registry_read(user, "SOFTWARE\\Q [V] ä", "a \"NAME\"\\"), registry_read(user, "Software", "")}) {
      ASSERT_TRUE(read);
      EXPECT_EQ(read->kind, value.kind);
      // of a text its closing NUL isn't told apart from none
      const bool closed = value.kind == 1 && read->data == value.data + '\0';
      EXPECT_TRUE(closed || read->data == value.data) << ::testing::PrintToString(value.data);
    }
  }
  EXPECT_FALSE(registry_read(user, "Software", "none"));
}

TEST_F(OwnRegistry, RefusesWhatItCannotOpen) {
  EXPECT_FALSE(registry_write(user, "none", "n", {1, "x"}));
  EXPECT_FALSE(registry_read(user, "none", "n"));
  EXPECT_FALSE(registry_create_sub_key(user, "none", "below"));
  EXPECT_FALSE(registry_create_sub_key(0x8000000fU, "", "a"));
  EXPECT_FALSE(registry_read(0x8000000fU, "Software", ""));
}

}  // namespace
}  // namespace platform
