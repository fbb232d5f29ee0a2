#include "platform/process.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>

#include "automation/failure.h"
#include "tests/platform/temp_folder.h"

namespace platform {
namespace {

using automation::Error;
using testing_support::TempFolder;
using testing_support::WithVariable;

class Process : public ::testing::Test {
 protected:
  void SetUp() override {
    program("Tool Export/report.exe",
            "#!/bin/sh\nfor a in \"$@\"; do echo \"<$a>\"; done > '" + report() + "'\n");
    program("dies.exe", "#!/bin/sh\nkill -9 $$\n");
    program("fails.exe", "#!/bin/sh\nexit 3\n");
    program("text.exe", "no program\n");
    program("lost.exe", "#!/no/such/interpreter\n");
    folder_.write("plain.exe", "#!/bin/sh\n");
    folder_.write("data/My List.tls", "");
  }
  void program(const std::string& name, const std::string& text) {
    chmod(folder_.write(name, text).c_str(), 0755);
  }
  std::string report() { return folder_.file("report"); }

  TempFolder folder_;
  WithVariable drive_{"QVESPRIT_DRIVE_Q", folder_.file("")};
};

TEST_F(Process, FindsTheProgramAndHandsOverItsArguments) {
  const std::string list = "<" + folder_.file("data/My List.tls") + ">\n";
  struct Case {
    const char* line;
    std::string report;
  };
  for (const Case& c : {
           Case{"Q:\\Tool Export\\report.exe", ""},
           Case{"Q:\\tool export\\REPORT.exe  ", ""},
           Case{"Q:\\Tool Export\\report Q:\\data\\My List.tls", list},
           Case{"Q:\\Tool Export\\report.exe Q:\\data\\my list.tls", list},
           Case{"\"Q:\\Tool Export\\report.exe\" \"Q:\\data\\My List.tls\"", list},
           Case{"\"Q:\\Tool Export\\report\" a \"b c\"  \"\" d\"e f\"", "<a>\n<b c>\n<>\n<de f>\n"},
           Case{"Q:\\Tool Export\\report.exe $HOME;*|`id` ", "<$HOME;*|`id`>\n"},
       }) {
    folder_.write("report", "not written");
    shell_and_wait(c.line, 1);
    EXPECT_EQ(folder_.read("report"), c.report) << c.line;
  }
}

TEST_F(Process, DoesNotMindHowTheProgramEnds) {
  EXPECT_NO_THROW(shell_and_wait("Q:\\dies.exe", 1));
  EXPECT_NO_THROW(shell_and_wait("Q:\\fails.exe", 1));
  EXPECT_NO_THROW(shell_and_wait("true", 1));
  const auto old = std::signal(SIGCHLD, SIG_IGN);
  shell_and_wait("Q:\\Tool Export\\report.exe late", 1);
  std::signal(SIGCHLD, old);
  EXPECT_EQ(folder_.read("report"), "<late>\n");
}

TEST_F(Process, TellsWhyAProgramCannotStart) {
  struct Case {
    const char* line;
    Error error;
  };
  for (const Case& c :
       {Case{"", Error::file_not_found}, Case{"Q:\\none.exe", Error::file_not_found},
        Case{"Q:\\Tool Export", Error::file_not_found},
        Case{"no-such-program-anywhere a", Error::file_not_found},
        Case{"\"Q:\\Tool Export\\report.exe", Error::none}, Case{"Q:\\plain.exe", Error::permission_denied},
        Case{"Q:\\text.exe", Error::invalid_argument}, Case{"Q:\\lost.exe", Error::file_not_found}}) {
    try {
      shell_and_wait(c.line, 1);
      EXPECT_EQ(c.error, Error::none) << c.line;
    } catch (const automation::Failure& failure) {
      EXPECT_EQ(failure.error(), c.error) << c.line;
    }
  }
}

}  // namespace
}  // namespace platform
