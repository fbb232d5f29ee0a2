#include "platform/files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <functional>

#include "automation/failure.h"
#include "tests/platform/temp_folder.h"

namespace platform {
namespace {

using automation::Error;
using automation::Failure;
using testing_support::TempFolder;
using testing_support::WithVariable;

Error error_of(const std::function<void()>& call) {
  try {
    call();
  } catch (const Failure& failure) {
    return failure.error();
  }
  return Error::none;
}

TEST(Files, FindsAPathInTheAddInsForm) {
  const TempFolder folder;
  folder.write("Export Files/Müller.CSV", "x");
  folder.write("Twins/b", "lower");
  folder.write("Twins/B", "upper");
  const WithVariable drive("QVESPRIT_DRIVE_Q", folder.file(""));
  struct Case {
    const char* path;
    bool there;
  };
  for (const Case& c :
       {Case{"Q:\\Export Files\\Müller.CSV", true}, Case{"q:\\export files\\mÜLLER.csv", true},
        Case{"Q:/export files\\müller.csv  ", true}, Case{"Q:\\Export Files", true},
        Case{"Q:\\export FILES\\", true}, Case{"Q:export files\\müller.csv", true}, Case{"Q:\\", true},
        Case{"Q:\\Export\\Müller.CSV", false}, Case{"Q:\\Export Files\\Müller.CS", false},
        Case{"Q:\\Export Files\\Müller.CSV\\x", false}, Case{"", false}, Case{" ", false}}) {
    EXPECT_EQ(file_exists(c.path), c.there) << c.path;
  }
  EXPECT_EQ(read_file("Q:\\twins\\b"), "lower");
  EXPECT_EQ(read_file("Q:\\twins\\B"), "upper");
  EXPECT_EQ(long_path("q:\\EXPORT files\\müller.csv"), "q:\\Export Files\\Müller.CSV");
  EXPECT_EQ(long_path("Q:\\none\\x"), "");
  EXPECT_EQ(long_path("Q:\\"), "Q:\\");
}

TEST(Files, MatchesNamesWithWildcards) {
  const TempFolder folder;
  folder.write("Part.Old.ESP", "");
  folder.write("bare", "");
  folder.write("f[1].txt", "");
  folder.write("Folder.d/x", "");
  struct Case {
    const char* pattern;
    bool matches;
  };
  for (const Case& c :
       {Case{"part.*", true}, Case{"PART.old.esp", true}, Case{"*.esp", true}, Case{"p*o*.e?p", true},
        Case{"part.*.e", false}, Case{"part.?", false}, Case{"bare.*", true}, Case{"bar?", true},
        Case{"bare?", false}, Case{"bare*", true}, Case{"f[1].txt", true}, Case{"f[1].*", true},
        Case{"folder.*", false}, Case{"folder.d\\?", true}, Case{"none\\*.*", false}}) {
    EXPECT_EQ(file_matches(folder.file(c.pattern)), c.matches) << c.pattern;
  }
  EXPECT_EQ(error_of([&] { file_matches(folder.file(std::string(300, 'x') + "\\y.*")); }),
            Error::bad_file_name);
}

TEST(Files, TellsWhyACallFailed) {
  const TempFolder folder;
  folder.write("plain", "x");
  struct Case {
    const char* name;
    Error error;
  };
  for (const Case& c : {Case{"none", Error::file_not_found}, Case{"none/none", Error::path_not_found},
                        Case{"plain/none", Error::path_not_found}, Case{".", Error::permission_denied}}) {
    const std::string path = folder.file(c.name);
    EXPECT_EQ(error_of([&] { read_file(path); }), c.error) << c.name;
    EXPECT_EQ(error_of([&] { delete_file(path); }), c.error) << c.name;
    if (c.error != Error::file_not_found) {
      EXPECT_EQ(error_of([&] { const OutputFile file(path); }), c.error) << c.name;
      EXPECT_EQ(error_of([&] { replace_file(path, "y"); }), c.error) << c.name;
    }
  }
  ASSERT_EQ(mkfifo(folder.file("pipe").c_str(), 0600), 0);
  for (const std::string& endless : {folder.file("pipe"), std::string("\\dev\\zero")}) {
    EXPECT_EQ(error_of([&] { read_file(endless); }), Error::permission_denied) << endless;
  }
  EXPECT_NE(error_of([&] { const OutputFile unread(folder.file("pipe")); }), Error::none);
  for (const char* drive_that_is_none : {"Y:list.tls", "Y:\\list.tls"}) {
    EXPECT_EQ(error_of([&] { const OutputFile file(drive_that_is_none); }), Error::path_not_found);
  }
  OutputFile full("\\dev\\full");
  EXPECT_EQ(error_of([&] { full.write("x"); }), Error::disk_full);
  EXPECT_EQ(error_of([] { OutputFile().write("x"); }), Error::bad_file_name);
}

TEST(Files, ReadsWhatHasNoSizeToTell) {
  EXPECT_NE(read_file("\\proc\\self\\status").find("Pid:"), std::string::npos);
}

TEST(Files, WritesFromTheStart) {
  const TempFolder folder;
  folder.write("list.tls", "a longer text of before");
  OutputFile file(folder.file("LIST.tls"));
  file.write("ab\r\n");
  OutputFile moved = std::move(file);
  EXPECT_FALSE(file.is_open());  // NOLINT(bugprone-use-after-move): that is asked
  moved.write(std::string("c\0d", 3));
  moved.close();
  moved.close();
  EXPECT_EQ(folder.read("list.tls"), std::string("ab\r\nc\0d", 7));
}

TEST(Files, ReplacesAFileAsAWhole) {
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

  std::filesystem::permissions(path, perms::owner_read);
  EXPECT_EQ(error_of([&] { replace_file(path, "newer"); }), Error::permission_denied);
  EXPECT_EQ(folder.read("a.cfg"), "new");
  const std::filesystem::directory_iterator entries(folder.file("."));
  EXPECT_EQ(std::distance(begin(entries), end(entries)), 2);
}

}  // namespace
}  // namespace platform
