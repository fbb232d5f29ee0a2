#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

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

TEST_F(RegistryFile, KeepsACopyOfADamagedStore) {
  const char* damaged[] = {"Windows Registry Editor Version 5.00\r\n", "REGEDIT4\r\n\"n\"=\"no key\"\r\n",
                           "REGEDIT4\r\n[HKEY_CURRENT_USER\\A]\r\n\"n\"=\"cut", "REGEDIT4\r\n[HKEY_CURR",
                           "REGEDIT4\r\n[HKEY_CURRENT_USER\\A]\r\n\"n\"=hex:0g\r\n"};
  int number = 1;
  for (const char* text : damaged) {
    folder_.write("settings/user.reg", text);
    EXPECT_FALSE(registry_read(user, "A", "n")) << text;
    EXPECT_FALSE(registry_write(user, "A", "n", {1, "x"}));
    EXPECT_EQ(folder_.read("settings/user.reg"), text);
    EXPECT_TRUE(registry_create_sub_key(user, "", "A"));
    EXPECT_TRUE(registry_write(user, "A", "n", {1, "x"}));
    EXPECT_EQ(registry_read(user, "A", "n")->data, "x\0"s);
    const std::string copy = "settings/user.reg.damaged" + (number == 1 ? "" : std::to_string(number));
    EXPECT_EQ(folder_.read(copy), text);
    ++number;
  }
}

TEST_F(RegistryFile, GathersNoCopiesOfADamagedStore) {
  using std::filesystem::perms;
  const auto copies = [&] {
    const std::filesystem::directory_iterator entries(folder_.file("settings"));
    return std::count_if(begin(entries), end(entries), [](const auto& entry) {
      return entry.path().string().find(".damaged") != std::string::npos;
    });
  };
  const std::string path = folder_.write("settings/user.reg", "damaged");
  std::filesystem::permissions(path, perms::owner_read);
  EXPECT_FALSE(registry_create_sub_key(user, "", "A"));
  EXPECT_EQ(copies(), 0) << "it can't be replaced";
  std::filesystem::permissions(path, perms::owner_read | perms::owner_write);
  for (int time = 0; time < 3; ++time) {
    folder_.write("settings/user.reg", "damaged");
    EXPECT_TRUE(registry_create_sub_key(user, "", "A"));
    EXPECT_EQ(copies(), 1);
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
