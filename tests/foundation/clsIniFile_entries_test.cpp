#include <gtest/gtest.h>

#include "automation/failure.h"
#include "foundation/clsIniFile.h"
#include "platform/message_box.h"
#include "platform/profile.h"
#include "tests/platform/known_differences.h"
#include "tests/platform/temp_folder.h"

namespace {

using automation::Failure;
using testing_support::TempFolder;
using namespace std::string_literals;

class IniFileEntries : public ::testing::Test {
 protected:
  void SetUp() override {
    platform::set_message_sink([this](std::string_view text, std::string_view title, platform::Icon) {
      messages_.push_back(std::string(title) + ":" + std::string(text));
    });
  }
  void TearDown() override { platform::set_message_sink({}); }

  clsIniFile& open(const std::string& text) {
    file_.FileName(folder_.write("a.ini", text));
    file_.SectionName("T");
    return file_;
  }
  std::string content() { return known_differences::with_plain_line_ends(folder_.read("a.ini")); }

  std::vector<std::string> messages_;
  TempFolder folder_;
  // on posix the system-wide profile lies beside the registry
  std::unique_ptr<testing_support::Otherwise> hive_ = testing_support::with_own_registry(folder_.file(""));
  clsIniFile file_;
};

TEST_F(IniFileEntries, ReadsNumbersAndTruthValues) {
  clsIniFile& file = open("[T]\nn=-32768\nbig=32768\nlow=-32769\non=  oN \nm=-1\nno=maybe\nempty=\n");
  EXPECT_EQ(file.GetInt("n", 1), -32768);
  EXPECT_EQ(file.GetInt("empty", 5), 5);
  EXPECT_EQ(file.GetInt("no", 5), 0);
  EXPECT_THROW((void)file.GetInt("big", 1), Failure);
  EXPECT_THROW((void)file.GetInt("low", 1), Failure);
  struct Case {
    const char* key;
    std::int16_t default_number;
    bool truth;
  };
  for (const Case& c :
       {Case{"on", 0, true}, Case{"m", 0, true}, Case{"no", 1, false}, Case{"empty", 1, false},
        Case{"none", 1, true}, Case{"none", 0, false}, Case{"n", 1, false}}) {
    EXPECT_EQ(file.GetTF(c.key, c.default_number), c.truth) << c.key;
  }
  EXPECT_EQ(file.IniRead("t", "n", 3, "d", "", true, file.FullPath()), "-32768");
  EXPECT_EQ(file.IniRead("t", "none", 3, "d", "", true, file.FullPath()), "3");
  EXPECT_EQ(file.IniRead("t", "none", 3, "d", "", false, file.FullPath()), "d");
}

TEST_F(IniFileEntries, WritesEntries) {
  clsIniFile& file = open("; mine\n[T]\ns=x\nn=1\n");
  EXPECT_NE(file.PutInt("n", -5), 0);
  EXPECT_NE(file.PutString("new", "a b"), 0);
  EXPECT_TRUE(file.PutTF("tf", 2));
  file.DeleteStrEntry("s");
  file.IniWrite("U", "k", "v", file.FullPath());
  EXPECT_EQ(content(), "; mine\n[T]\ns=\nn=-5\nnew=a b\ntf=True\n[U]\nk=v\n");
  file.DeleteNumEntry("N");
  file.DeleteNumEntry("none");
  EXPECT_EQ(content(), "; mine\n[T]\ns=\nnew=a b\ntf=True\n[U]\nk=v\n");
  file.DeleteSection();
  EXPECT_EQ(content(), "; mine\n[T]\n[U]\nk=v\n");
  EXPECT_EQ(file.SectionName(), "");
  file.FileName(folder_.file("none/b.ini"));
  file.SectionName("T");
  EXPECT_EQ(file.PutString("k", "v"), 0);
  EXPECT_FALSE(file.PutTF("k", 1));
  std::string list = "a=1\0\0"s;
  EXPECT_FALSE(file.SetSectEntries(list));
  EXPECT_TRUE(messages_.empty());
}

TEST_F(IniFileEntries, ListsAndReplacesASection) {
  clsIniFile& file = open("[T]\na=1=2\n; c\nb=\n[U]\n");
  EXPECT_EQ(file.GetSectEntries(), "a=1=2\0b=\0\0"s);
  clsIniFile::Rows rows;
  ASSERT_EQ(file.GetSectEntriesEx(rows), 2);
  EXPECT_EQ(rows, (clsIniFile::Rows{{"a", "1=2"}, {"b", ""}}));
  rows.push_back({"c", "3"});
  EXPECT_TRUE(file.SetSectEntriesEx(rows));
  EXPECT_EQ(content(), known_differences::expected(known_differences::replacing, "[T]\na=1=2\n; c\nb=\n[U]\n",
                                                   "[T]\na=1=2\nb=\nc=3\n; c\n[U]\n"));
  file.SectionName("U");
  EXPECT_EQ(file.GetSectEntries(), "\0"s);
  EXPECT_EQ(file.GetSectEntriesEx(rows), 0);
}

TEST_F(IniFileEntries, ListsTheSections) {
  clsIniFile& file = open(
      "[A b]\r [\xc4] ; c\r\n[C] junk\r;[D]\r x [E]\r\n[F]]\r[G\r[H]\t\r[I]  \r\nk=[J]\r[K]\nk=1\r[A b]");
  EXPECT_EQ(file.GetSections(), "A b\0Ä\0I\0A b\0\0"s);
  std::vector<std::string> names;
  EXPECT_EQ(file.GetSectionsEx(names), 4);
  EXPECT_EQ(names, (std::vector<std::string>{"A b", "Ä", "I", "A b"}));
  EXPECT_TRUE(file.SectExist("a B"));
  EXPECT_TRUE(file.SectExist("ä"));
  for (const char* name : {"A", "b", "C", "D", "J", "K"}) EXPECT_FALSE(file.SectExist(name)) << name;
  open("[]\r\n[A]\r\n");
  EXPECT_TRUE(file.SectExist("A"));
  open("k=1\n[A]\n");
  EXPECT_EQ(file.GetSections(), "\0\0"s) << "a lone LF ends no line here";
  EXPECT_EQ(file.GetSectionsEx(names), 0);
  EXPECT_FALSE(file.SectExist(""));
  file.FileName(folder_.file("none.ini"));
  EXPECT_THROW((void)file.GetSections(), Failure);
  std::string many;
  for (int i = 0; i < 32768; ++i) many += "[s]\r\n";
  open(many);
  EXPECT_THROW(file.GetSectionsEx(names), Failure);
}

TEST_F(IniFileEntries, TellsTheLogicErrorInEveryMemberThatNeedsASection) {
  clsIniFile& file = open("[T]\nk=1\n");
  file.DeleteSection();
  const std::string before = content();
  clsIniFile::Rows rows;
  std::vector<std::string> names;
  std::string list = "a=1\0\0"s;
  file.DeleteStrEntry("k");
  file.DeleteNumEntry("k");
  file.DeleteSection();
  file.FlushCache();
  EXPECT_EQ(file.GetInt("k", 3), 0);
  EXPECT_EQ(file.GetSectEntries(), "");
  EXPECT_EQ(file.GetSectEntriesEx(rows), 0);
  EXPECT_EQ(file.GetSections(), "");
  EXPECT_EQ(file.GetSectionsEx(names), 0);
  EXPECT_FALSE(file.GetTF("k", 1));
  EXPECT_EQ(file.PutInt("k", 1), 0);
  EXPECT_EQ(file.PutString("k", "1"), 0);
  EXPECT_FALSE(file.PutTF("k", 1));
  EXPECT_FALSE(file.SectExist("T"));
  EXPECT_FALSE(file.SetSectEntriesEx(rows));
  EXPECT_FALSE(file.SetSectEntries(list));
  EXPECT_EQ(content(), before);
  EXPECT_EQ(messages_, std::vector<std::string>(
                           16, "IniFile Logic Error:[Section] and FileName Not Registered in Private.Ini!"));
}

TEST_F(IniFileEntries, SwitchesToTheSystemWideProfileAndBack) {
  clsIniFile& file = open("[T]\nk=private\n");
  const std::string path = file.FullPath();
  file.UseWinINI(true);
  EXPECT_EQ(file.FullPath(), platform::windows_directory() + "\\WIN.INI");
  EXPECT_EQ(file.FileName() + "." + file.FileExt(), "WIN.INI");
  EXPECT_EQ(file.PrivPath(), path);
  EXPECT_NE(file.PutString("k", "system"), 0);
  EXPECT_EQ(file.GetString("k", ""), "system");
  file.DeleteNumEntry("k");
  file.IniWrite("T", "j", "1", path);
  EXPECT_EQ(file.GetSectEntries(), "k=0\0j=1\0\0"s);
  EXPECT_TRUE(file.SectExist("T"));
  EXPECT_EQ(content(), "[T]\nk=private\n");
  file.DeleteSection();
  file.SectionName("T");
  file.UseWinINI(false);
  EXPECT_EQ(file.FullPath(), path);
  EXPECT_EQ(file.GetString("k", ""), "private");
}

TEST_F(IniFileEntries, SaysWhetherAFileExists) {
  const clsIniFile& file = open("");
  EXPECT_EQ(file.Exists(folder_.file("A.INI")), -1);
  EXPECT_EQ(file.Exists(folder_.file("a.b")), 0);
  const testing_support::Drive drive(folder_.file(""));
  EXPECT_EQ(file.Exists(drive.at("q:\\a")), -1);
  EXPECT_EQ(file.Exists(drive.at("q:\\b")), 0);
  EXPECT_TRUE(messages_.empty());
  EXPECT_EQ(file.Exists(drive.at("q:\\") + (testing_support::on_windows ? "a<b" : std::string(300, 'x')) +
                        "\\a.ini"),
            0);
  EXPECT_EQ(messages_, std::vector<std::string>{"QVEsprit:QVEsprit Bad file name or number 52"});
}

}  // namespace
