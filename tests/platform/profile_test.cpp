#include "platform/profile.h"

#include <gtest/gtest.h>

#include "platform/text.h"
#include "tests/platform/profile_cases.h"
#include "tests/platform/temp_folder.h"

namespace platform {
namespace {

using testing_support::TempFolder;
using testing_support::WithVariable;

TEST(Profile, ReadsAStringAsTheSystemDoes) {
  const TempFolder folder;
  for (const auto& c : profile_cases::string_cases) {
    const std::string path = folder.write("t.ini", std::string(c.text));
    EXPECT_EQ(private_profile_string(from_code_page(c.section), from_code_page(c.key),
                                     from_code_page(c.default_text), c.size, path),
              from_code_page(c.expected))
        << "[" << c.section << "] " << c.key << " in\n"
        << c.text;
  }
}

TEST(Profile, HasDefaultsOnlyInAFileThatCannotBeRead) {
  const TempFolder folder;
  EXPECT_EQ(private_profile_string("T", "k", "d ", 255, folder.file("none.ini")), "d");
  EXPECT_EQ(private_profile_string("T", "k", "d", 255, folder.file(".")), "d");
  EXPECT_EQ(private_profile_string("T", "k", "d", 255, ""), "d");
}

TEST(Profile, CutsALongValueBehind254Bytes) {
  const TempFolder folder;
  for (const std::size_t length : {254, 255, 300}) {
    const std::string path = folder.write("t.ini", "[T]\nk=" + std::string(length, '\xe4'));
    std::string expected;
    for (int i = 0; i < 254; ++i) expected += "ä";
    EXPECT_EQ(private_profile_string("T", "k", "", 255, path), expected) << length;
  }
}

TEST(Profile, ReadsAnotherCodePage) {
  const TempFolder folder;
  const WithVariable page("QVESPRIT_CODEPAGE", "932");
  // the second byte of the section's name is a closing bracket
  const std::string path = folder.write("t.ini", "[\x83\x5d]\r\nk=\x83\x5c\r\n");
  EXPECT_EQ(private_profile_string("ゾ", "k", "d", 255, path), "ソ");
}

}  // namespace
}  // namespace platform
