#include "foundation/registry.h"

#include <gtest/gtest.h>

#include "tests/platform/temp_folder.h"

namespace {

using testing_support::TempFolder;
using testing_support::WithVariable;

class RegistryModule : public ::testing::Test {
 protected:
  const std::int16_t user_ = 1;
  TempFolder folder_;
  WithVariable store_{"QVESPRIT_REGISTRY", folder_.file("user.reg")};
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
  folder_.write("user.reg",
                "REGEDIT4\r\n[HKEY_CURRENT_USER\\K]\r\n\"five\"=dword:00000005\r\n\"low\"=dword:fffffffe\r\n"
                "\"bytes\"=hex:0a,ff\r\n\"several\"=hex(7):61,62,00,63,00,00\r\n"
                "\"expand\"=hex(2):25,50,25,00\r\n\"open\"=hex(1):61,62\r\n\"other\"=hex(b):61\r\n");
  struct Case {
    const char* name;
    const char* text;
  };
  for (const Case& c : {Case{"five", "5"}, Case{"low", "-2"}, Case{"bytes", "0A FF "}, Case{"several", "ab"},
                        Case{"expand", "%P%"}, Case{"open", "ab"}, Case{"other", ""}, Case{"none", ""}}) {
    EXPECT_EQ(Registry::GetRegistryValue(user_, "K", c.name), c.text) << c.name;
  }
}

TEST_F(RegistryModule, TakesTokensOffAText) {
  std::string text = "a\\\\b";
  EXPECT_EQ(Registry::NextToken(text, "\\"), "a");
  EXPECT_EQ(Registry::NextToken(text, "\\"), "");
  EXPECT_EQ(Registry::NextToken(text, "\\"), "b");
  EXPECT_EQ(text, "");
}

}  // namespace
