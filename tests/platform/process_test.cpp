#include "platform/process.h"

#include <gtest/gtest.h>

#include "automation/failure.h"
#include "tests/platform/known_differences.h"
#include "tests/platform/temp_folder.h"

namespace platform {
namespace {

using automation::Error;
using testing_support::on_windows;
using testing_support::TempFolder;

class Process : public ::testing::Test {
 protected:
  void SetUp() override {
    program("Tool Export/report.exe", "report\t" + folder_.file("report"));
    program("dies.exe", "die");
    program("fails.exe", "exit\t3");
    folder_.write("text.exe", "no program\n");
    folder_.write("data/My List.tls", "");
    std::filesystem::permissions(folder_.file("text.exe"), std::filesystem::perms::owner_all);
  }
  void program(const std::string& name, const std::string& instructions) {
    testing_support::make_program(folder_.file(name), instructions);
  }

  TempFolder folder_;
  testing_support::Drive drive_{folder_.file("")};
};

TEST_F(Process, FindsTheProgramAndHandsOverItsArguments) {
  const std::string list = "<" + folder_.file("data/My List.tls") + ">\n";
  const std::string parted = "<" + folder_.file("data/My") + ">\n<List.tls>\n";
  struct Case {
    const char* line;
    const char* whole;  // what a program of Windows finds behind its name
    std::string report;
  };
  for (const Case& c : {
           Case{"Q:\\Tool Export\\report.exe", "", ""},
           Case{"Q:\\tool export\\REPORT.exe  ", "", ""},
           Case{"Q:\\Tool Export\\report Q:\\data\\My List.tls", "Q:\\data\\My List.tls", parted},
           Case{"Q:\\Tool Export\\report.exe \"Q:\\data\\my list.tls\"", "\"Q:\\data\\my list.tls\"", list},
           Case{"\"Q:\\Tool Export\\report.exe\" \"Q:\\data\\My List.tls\"", "\"Q:\\data\\My List.tls\"",
                list},
           Case{"\"Q:\\Tool Export\\report\" a \"b c\"  \"\" d\"e f\"", "a \"b c\"  \"\" d\"e f\"",
                "<a>\n<b c>\n<>\n<de f>\n"},
           Case{"Q:\\Tool Export\\report.exe $HOME;*|`id` ", "$HOME;*|`id`", "<$HOME;*|`id`>\n"},
       }) {
    folder_.write("report", "not written");
    shell_and_wait(drive_.at(c.line), 1);
    const std::string whole = *c.whole != '\0' ? "<" + drive_.at(c.whole) + ">\n" : "";
    EXPECT_EQ(folder_.read("report"), on_windows ? whole : c.report) << c.line;
  }
}

TEST_F(Process, DoesNotMindHowTheProgramEnds) {
  EXPECT_NO_THROW(shell_and_wait(drive_.at("Q:\\dies.exe"), 1));
  EXPECT_NO_THROW(shell_and_wait(drive_.at("Q:\\fails.exe"), 1));
}

TEST_F(Process, TellsWhyAProgramCannotStart) {
  struct Case {
    const char* line;
    Error error;
  };
  for (const Case& c :
       {Case{"", Error::file_not_found}, Case{"Q:\\none.exe", Error::file_not_found},
        Case{"Q:\\no folder\\none.exe", Error::file_not_found},
        Case{"Q:\\Tool Export", Error::file_not_found},
        Case{"no-such-program-anywhere a", Error::file_not_found},
        Case{"\"Q:\\Tool Export\\report.exe", known_differences::starting_behind_an_open_quote},
        Case{"Q:\\text.exe", Error::invalid_argument}}) {
    try {
      shell_and_wait(drive_.at(c.line), 1);
      EXPECT_EQ(c.error, Error::none) << c.line;
    } catch (const automation::Failure& failure) {
      EXPECT_EQ(failure.error(), c.error) << c.line;
    }
  }
}

}  // namespace
}  // namespace platform
