#include <gtest/gtest.h>
#include <sys/stat.h>

#include "automation/failure.h"
#include "platform/files.h"
#include "tests/platform/error_of.h"
#include "tests/platform/temp_folder.h"

namespace platform {
namespace {

using automation::Error;
using testing_support::error_of;
using testing_support::TempFolder;

TEST(FilesOnPosix, FindsAPathWithoutASlashBehindTheDrive) {
  const TempFolder folder;
  folder.write("Export/a.csv", "x");
  const testing_support::Drive drive(folder.file(""));
  EXPECT_TRUE(file_exists("Q:export\\a.csv"));
  for (const char* drive_that_is_none : {"Y:list.tls", "Y:\\list.tls"}) {
    EXPECT_EQ(error_of([&] { const OutputFile file(drive_that_is_none); }), Error::path_not_found);
  }
}

TEST(FilesOnPosix, TakesTheNameAsGivenWhereTwoDifferInCase) {
  const TempFolder folder;
  folder.write("Twins/b", "lower");
  folder.write("Twins/B", "upper");
  EXPECT_EQ(read_file(folder.file("twins/b")), "lower");
  EXPECT_EQ(read_file(folder.file("twins/B")), "upper");
}

TEST(FilesOnPosix, ListsAFolderAnewWhereItsTimeIsAnotherOne) {
  const TempFolder folder;
  const auto age = [&](int hours) {
    std::filesystem::last_write_time(
        folder.file("."), std::filesystem::file_time_type::clock::now() - std::chrono::hours(hours));
  };
  for (int hours = 3; hours > 0; --hours) {
    const std::string name = "model" + std::to_string(hours);
    folder.write(name, "x");
    EXPECT_TRUE(file_exists(folder.file("MODEL" + std::to_string(hours)))) << "changed just now";
    age(hours);
    EXPECT_FALSE(file_exists(folder.file("NONE")));
    const auto time = std::filesystem::last_write_time(folder.file("."));
    folder.write("none", "x");
    std::filesystem::last_write_time(folder.file("."), time);
    EXPECT_FALSE(file_exists(folder.file("NONE"))) << "nobody tells of a change";
    std::filesystem::remove(folder.file("none"));
    EXPECT_TRUE(file_exists(folder.file("MODEL3")));
  }
}

TEST(FilesOnPosix, HangsOnNothingThatIsNoFile) {
  const TempFolder folder;
  ASSERT_EQ(mkfifo(folder.file("pipe").c_str(), 0600), 0);
  for (const std::string& endless : {folder.file("pipe"), std::string("\\dev\\zero")}) {
    EXPECT_EQ(error_of([&] { read_file(endless); }), Error::permission_denied) << endless;
  }
  EXPECT_NE(error_of([&] { const OutputFile unread(folder.file("pipe")); }), Error::none);
  OutputFile full("\\dev\\full");
  EXPECT_EQ(error_of([&] { full.write("x"); }), Error::disk_full);
  EXPECT_NE(read_file("\\proc\\self\\status").find("Pid:"), std::string::npos) << "it has no size to tell";
}

TEST(FilesOnPosix, ReplacesAFileWithItsLinkAndRights) {
  using std::filesystem::perms;
  const TempFolder folder;
  const std::string path = folder.write("a.cfg", "old");
  std::filesystem::create_symlink("a.cfg", folder.file("link.cfg"));
  std::filesystem::permissions(path, perms::owner_read | perms::owner_write | perms::group_read);
  replace_file(folder.file("link.cfg"), "new");
  EXPECT_EQ(folder.read("a.cfg"), "new");
  EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link.cfg")));
  EXPECT_EQ(std::filesystem::status(path).permissions(),
            perms::owner_read | perms::owner_write | perms::group_read);
}

}  // namespace
}  // namespace platform
