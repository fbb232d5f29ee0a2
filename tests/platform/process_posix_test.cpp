#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>

#include "automation/failure.h"
#include "platform/process.h"
#include "tests/platform/temp_folder.h"

namespace platform {
namespace {

using automation::Error;
using testing_support::TempFolder;

TEST(ProcessOnPosix, TellsWhyAScriptCannotStart) {
  const TempFolder folder;
  folder.write("plain.exe", "#!/bin/sh\n");
  chmod(folder.write("lost.exe", "#!/no/such/interpreter\n").c_str(), 0755);
  for (const auto& [name, error] :
       {std::pair("plain.exe", Error::permission_denied), std::pair("lost.exe", Error::file_not_found)}) {
    try {
      shell_and_wait(folder.file(name), 1);
      ADD_FAILURE() << name;
    } catch (const automation::Failure& failure) {
      EXPECT_EQ(failure.error(), error) << name;
    }
  }
}

TEST(ProcessOnPosix, WaitsWhereTheHostIgnoresItsChildren) {
  const TempFolder folder;
  const std::string program =
      folder.write("late.exe", "#!/bin/sh\necho late > '" + folder.file("report") + "'\n");
  chmod(program.c_str(), 0755);
  EXPECT_NO_THROW(shell_and_wait("true", 1));
  const auto old = std::signal(SIGCHLD, SIG_IGN);
  shell_and_wait(program, 1);
  std::signal(SIGCHLD, old);
  EXPECT_EQ(folder.read("report"), "late\n");
}

}  // namespace
}  // namespace platform
