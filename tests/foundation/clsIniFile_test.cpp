#include "foundation/clsIniFile.h"

#include <gtest/gtest.h>

#include "foundation/mDatei.h"
#include "platform/files.h"
#include "platform/message_box.h"
#include "tests/platform/temp_folder.h"

namespace {

using testing_support::TempFolder;

class IniFile : public ::testing::Test {
 protected:
  void SetUp() override {
    platform::set_message_sink([this](std::string_view text, std::string_view title, platform::Icon icon) {
      EXPECT_EQ(icon, platform::Icon::information);
      messages_ += std::string(title) + ":" + std::string(text) + "\n";
    });
  }
  void TearDown() override { platform::set_message_sink({}); }

  std::string messages_;
  TempFolder folder_;
};

constexpr const char* logic_error =
    "IniFile Logic Error:[Section] and FileName Not Registered in Private.Ini!\n";

TEST_F(IniFile, TakesAPathApart) {
  const std::string here = platform::current_directory();
  const auto on_drive = [&](char drive) {
    const std::string folder = platform::current_directory(drive);
    return folder.empty() ? here : folder;
  };
  struct Case {
    std::string path;
    std::string folder;
    std::string name;
    std::string extension;
  };
  clsIniFile file;
  for (const Case& c :
       {Case{"C:\\Esprit\\QVEsprit.cfg", "C:\\Esprit", "QVEsprit", "cfg"},
        Case{"\\a\\b\\a.b.ini", "\\a\\b", "a", "b.ini"}, Case{"\\a.d\\word", "\\a.d", "word", "word"},
        Case{"word", here, "word", "word"}, Case{"C:name.ini", on_drive('C'), "name", "ini"},
        Case{"a:b:c.ini", on_drive('a'), "b:c", "ini"}, Case{"ab:c.ini", here, "ab:c", "ini"},
        Case{"X:name.ini", here, "name", "ini"}, Case{"1:name.ini", here, "name", "ini"},
        Case{"/:name.ini", here, "name", "ini"}, Case{"ä:name.ini", here, "name", "ini"},
        Case{"\\a\\.ini", "\\a", "", "ini"}, Case{"\\a\\name.", "\\a", "name", ""},
        Case{"\\a\\\\b.ini", "\\a", "b", "ini"}, Case{" \\a\\b.ini ", " \\a", "b", "ini "}}) {
    file.FileName(c.path);
    EXPECT_EQ(file.FullPath(), c.path);
    EXPECT_EQ(file.PrivPath(), c.path);
    EXPECT_EQ(file.FilePath(), c.folder) << c.path;
    EXPECT_EQ(file.FileName(), c.name) << c.path;
    EXPECT_EQ(file.FileExt(), c.extension) << c.path;
    EXPECT_EQ(file.ExtractPath(""), c.folder) << c.path;
    EXPECT_EQ(file.ExtractName("", 1), c.name) << c.path;
  }
  EXPECT_EQ(file.ExtractName("\\x\\a.b.c", 0), "a.b.c");
}

TEST_F(IniFile, StartsOnTheProgramsOwnFileWithoutASection) {
  clsIniFile file;
  EXPECT_EQ(file.FileName() + "." + file.FileExt(), "Test_foundation.ini");
  EXPECT_TRUE(platform::file_exists(file.FilePath() + "\\test_foundation" + testing_support::program_ending));
  EXPECT_EQ(file.SectionName(), "General");
  EXPECT_EQ(file.GetString("k", "d"), "");
  EXPECT_EQ(messages_, logic_error);
  file.FileName(folder_.write("a.ini", "[General]\nk=v\n[U]\nk=w\n"));
  EXPECT_EQ(file.GetString("k", "d"), "v");
  file.SectionName("u");
  EXPECT_EQ(file.GetString("K", "d"), "w");
  EXPECT_EQ(file.GetString("none", " d "), " d");
  EXPECT_EQ(messages_, logic_error);
  file.SectionName("  ");
  EXPECT_EQ(file.GetString("k", "d"), "");
  file.FileName(file.FullPath());
  EXPECT_EQ(file.GetString("k", "d"), "");
  EXPECT_EQ(messages_, std::string(logic_error) + logic_error + logic_error);
}

TEST_F(IniFile, SeesAFileThatChangesMeanwhile) {
  clsIniFile file;
  file.FileName(folder_.write("a.ini", "[General]\nk=1\n"));
  EXPECT_EQ(file.GetString("k", "d"), "1");
  folder_.write("a.ini", "[General]\nk=2\n");
  EXPECT_EQ(file.GetString("k", "d"), "2");
}

TEST(Datei, RemovesWhatFollowsTheLastDot) {
  struct Case {
    const char* text;
    const char* rest;
  };
  for (const Case& c : {Case{"a.b.esp", "a.b"}, Case{".esp", ""}, Case{"part", "part"}, Case{"", ""},
                        Case{"C:\\v1.2\\part", "C:\\v1"}}) {
    EXPECT_EQ(mDatei::RemoveExtension(c.text), c.rest) << c.text;
  }
}

}  // namespace
