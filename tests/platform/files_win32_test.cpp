#include <gtest/gtest.h>
#include <windows.h>

#include "automation/failure.h"
#include "platform/files.h"
#include "tests/platform/error_of.h"
#include "tests/platform/temp_folder.h"

namespace platform {
namespace {

using automation::Error;
using testing_support::error_of;
using testing_support::TempFolder;

TEST(FilesOnWindows, TellsOfAFileThatIsInUse) {
  const TempFolder folder;
  const std::string path = folder.write("a.csv", "old");
  const HANDLE other = CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_EQ(error_of([&] { read_file(path); }), Error::permission_denied);
  EXPECT_EQ(error_of([&] { delete_file(path); }), Error::permission_denied);
  EXPECT_EQ(error_of([&] { const OutputFile file(path); }), Error::permission_denied);
  EXPECT_EQ(error_of([&] { replace_file(path, "new"); }), Error::permission_denied);
  CloseHandle(other);
  EXPECT_EQ(read_file(path), "old");
  // the exporter may still have its file open when it is read
  const OutputFile held(folder.file("b.csv"));
  EXPECT_EQ(read_file(folder.file("b.csv")), "");
}

TEST(FilesOnWindows, HangsOnNothingThatIsNoFile) {
  for (const char* device : {"NUL", "\\\\.\\NUL"}) {
    EXPECT_EQ(error_of([&] { read_file(device); }), Error::permission_denied) << device;
  }
  EXPECT_EQ(error_of([] { read_file("a<b>.csv"); }), Error::bad_file_name);
}

}  // namespace
}  // namespace platform
