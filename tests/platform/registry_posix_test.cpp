#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/registry.h"
#include "tests/platform/temp_folder.h"

namespace platform {
namespace {

using testing_support::TempFolder;
using testing_support::WithVariable;
using namespace std::string_literals;

constexpr RegistryRoot user = 0x80000001U;

class RegistryFile : public ::testing::Test {
 protected:
  TempFolder folder_;
  WithVariable store_{"QVESPRIT_REGISTRY", folder_.file("settings/user.reg")};
};

TEST_F(RegistryFile, ReadsAnExport) {
  folder_.write("settings/user.reg",
                "REGEDIT4\r\n\r\n; by hand\r\n[HKEY_LOCAL_MACHINE\\A]\r\n\"n\"=\"other\"\r\n"
                "[hkey_current_user\\A\\B]\r\n@=\"C:\\\\x\"\r\n\"n\"=dword:0000000A\r\n"
                "\"h\"=hex(7):61,00,\\\r\n  62,00,00\r\n");
  EXPECT_EQ(registry_read(user, "a\\b", "")->data, "C:\\x\0"s);
  EXPECT_EQ(registry_read(user, "a\\b", "N")->data, "\x0a\0\0\0"s);
  EXPECT_EQ(registry_read(user, "a\\b", "h")->data, "a\0b\0\0"s);
  EXPECT_FALSE(registry_read(user, "a", "n"));
  // a key above a key is there
  EXPECT_TRUE(registry_write(user, "A", "n", {1, "mine"}));
  EXPECT_EQ(registry_read(0x80000002U, "A", "n")->data, "other\0"s);
}

TEST_F(RegistryFile, RefusesWhatItCannotHold) {
  EXPECT_FALSE(registry_create_sub_key(user, "", "a\r\n[b]"));
  EXPECT_FALSE(std::filesystem::exists(folder_.file("settings/user.reg")));
  std::filesystem::create_directories(folder_.file("settings/user.reg"));
  EXPECT_FALSE(registry_create_sub_key(user, "", "a"));
}

TEST_F(RegistryFile, WritesToAStoreAndToNothingElse) {
  struct Case {
    std::string text;
    bool is_store;
  };
  for (const Case& c :
       {Case{"", true}, Case{"\r\n \t\r\n\n", true}, Case{"\r\nREGEDIT4\r\n", false}, Case{"REGEDIT4", true},
        Case{"; my notes\n", false}, Case{"Windows Registry Editor Version 5.00\r\n", false},
        Case{"REGEDIT4\r\n\"n\"=\"no key\"\r\n", false}, Case{std::string(9, '\0'), false},
        Case{"REGEDIT4\r\n[HKEY_CURRENT_USER\\A]\r\n\"n\"=\"cut", false},
        Case{"REGEDIT4\r\n[HKEY_CURR", false},
        Case{"REGEDIT4\r\n[HKEY_CURRENT_USER\\A]\r\n\"n\"=hex:0g\r\n", false}}) {
    folder_.write("settings/user.reg", c.text);
    EXPECT_FALSE(registry_read(user, "A", "n")) << c.text;
    EXPECT_EQ(registry_create_sub_key(user, "", "A"), c.is_store) << c.text;
    EXPECT_EQ(registry_write(user, "A", "n", {1, "x"}), c.is_store) << c.text;
    EXPECT_EQ(registry_read(user, "A", "n").has_value(), c.is_store) << c.text;
    EXPECT_EQ(folder_.read("settings/user.reg") == c.text, !c.is_store) << c.text;
  }
}

TEST_F(RegistryFile, LosesNoValueToAnotherProcess) {
  ASSERT_TRUE(registry_create_sub_key(user, "", "A"));
  constexpr int rounds = 20;
  const auto write_all = [&](const std::string& name) {
    for (int i = 0; i < rounds; ++i) {
      if (!registry_write(user, "A", name + std::to_string(i), {1, "x"})) return false;
    }
    return true;
  };
  const pid_t other = fork();
  if (other == 0) _exit(write_all("other") ? 0 : 1);
  EXPECT_TRUE(write_all("mine"));
  int status = -1;
  waitpid(other, &status, 0);
  EXPECT_EQ(status, 0);
  for (const char* name : {"mine", "other"}) {
    for (int i = 0; i < rounds; ++i)
      EXPECT_TRUE(registry_read(user, "A", name + std::to_string(i))) << name << i;
  }
}

}  // namespace
}  // namespace platform
