#include <gtest/gtest.h>

#include "platform/profile.h"
#include "tests/platform/temp_folder.h"

namespace platform {
namespace {

using testing_support::TempFolder;
using testing_support::WithVariable;

TEST(ProfileOnPosix, ReadsAnotherCodePage) {
  const TempFolder folder;
  const WithVariable page("QVESPRIT_CODEPAGE", "932");
  // the second byte of the section's name is a closing bracket
  const std::string path = folder.write("t.ini", "[\x83\x5d]\r\nk=\x83\x5c\r\n");
  EXPECT_EQ(private_profile_string("ゾ", "k", "d", 255, path), "ソ");
}

TEST(ProfileOnPosix, CopesWithAHugeLine) {
  const TempFolder folder;
  constexpr std::size_t huge = 50'000'000;
  const std::string text = "[T]\n" + std::string(huge, '\0');
  const std::string path = folder.write("t.ini", text + "\n[\xc4]\nlast=1");
  EXPECT_TRUE(write_private_profile_string("ä", "LAST", "2", path));
  EXPECT_EQ(private_profile_int("ä", "last", 0, path), 2);
  EXPECT_EQ(std::filesystem::file_size(path), text.size() + std::string("\n[A]\nlast=2").size());
}

}  // namespace
}  // namespace platform
