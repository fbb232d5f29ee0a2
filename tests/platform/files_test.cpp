#include "platform/files.h"

#include <gtest/gtest.h>

#include "automation/failure.h"
#include "tests/platform/error_of.h"
#include "tests/platform/temp_folder.h"

namespace platform {
namespace {

using automation::Error;
using testing_support::error_of;
using testing_support::TempFolder;

TEST(Files, FindsAPathInTheAddInsForm) {
  const TempFolder folder;
  folder.write("Export Files/Müller.CSV", "x");
  const testing_support::Drive drive(folder.file(""));
  struct Case {
    const char* path;
    bool there;
  };
  for (const Case& c :
       {Case{"Q:\\Export Files\\Müller.CSV", true}, Case{"q:\\export files\\mÜLLER.csv", true},
        Case{"Q:/export files\\müller.csv  ", true}, Case{"Q:\\Export Files", true},
        Case{"Q:\\export FILES\\", true}, Case{"Q:\\", true}, Case{"Q:\\Export\\Müller.CSV", false},
        Case{"Q:\\Export Files\\Müller.CS", false}, Case{"Q:\\Export Files\\Müller.CSV\\x", false},
        Case{"", false}, Case{" ", false}}) {
    EXPECT_EQ(file_exists(drive.at(c.path)), c.there) << c.path;
  }
  EXPECT_EQ(long_path(drive.at("q:\\EXPORT files\\müller.csv")), drive.at("q:\\Export Files\\Müller.CSV"));
  EXPECT_EQ(long_path(drive.at("Q:\\none\\x")), "");
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
  const std::string impossible = testing_support::on_windows ? "a<b" : std::string(300, 'x');
  EXPECT_EQ(error_of([&] { file_matches(folder.file(impossible + "\\y.*")); }), Error::bad_file_name);
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
  EXPECT_EQ(error_of([] { OutputFile().write("x"); }), Error::bad_file_name);
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
  const TempFolder folder;
  replace_file(folder.file("a.cfg"), "old and longer");
  const std::string path = folder.file("a.cfg");
  replace_file(path, "new");
  EXPECT_EQ(folder.read("a.cfg"), "new");
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  EXPECT_EQ(error_of([&] { replace_file(path, "newer"); }), Error::permission_denied);
  EXPECT_EQ(folder.read("a.cfg"), "new");
  std::filesystem::permissions(path, std::filesystem::perms::owner_all);
  const std::filesystem::directory_iterator entries(folder.file("."));
  EXPECT_EQ(std::distance(begin(entries), end(entries)), 1) << "nothing is left beside it";
}

}  // namespace
}  // namespace platform
