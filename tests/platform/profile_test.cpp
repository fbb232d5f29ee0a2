#include "platform/profile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>

#include "platform/text.h"
#include "tests/platform/known_differences.h"
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
    std::string_view expected = known_differences::expected(known_differences::reading, c.text, c.expected);
    expected = known_differences::expected(known_differences::reading, c.default_text, expected);
    EXPECT_EQ(private_profile_string(from_code_page(c.section), from_code_page(c.key),
                                     from_code_page(c.default_text), c.size, path),
              from_code_page(expected))
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

TEST(Profile, ReadsNumbersAndSectionsAsTheSystemDoes) {
  const TempFolder folder;
  for (const auto& c : profile_cases::int_cases) {
    const std::string path = folder.write("t.ini", std::string("[T]\r\nk=") + c.value);
    EXPECT_EQ(private_profile_int("T", "k", c.default_number, path), c.expected) << c.value;
    EXPECT_EQ(private_profile_int("T", "none", c.default_number, path), c.default_number);
  }
  for (const auto& c : profile_cases::section_cases) {
    const std::string path = folder.write("t.ini", std::string(c.text));
    std::string list = private_profile_section(c.section, c.size, path);
    std::ranges::replace(list, '\0', '|');
    EXPECT_EQ(list, c.expected) << c.text;
  }
}

TEST(Profile, CutsASectionAtTheBuffer) {
  const TempFolder folder;
  for (const std::size_t length : {4096, 5000}) {
    std::string text = "[T]\n";
    while (text.size() < length + 4) text += "key=value\n";
    const std::string list = private_profile_section("T", 4096, folder.write("t.ini", text));
    EXPECT_EQ(list.size(), 4095U);
    EXPECT_TRUE(list.ends_with(std::string("key=value\0key=\0", 15))) << list.substr(4000);
  }
}

TEST(Profile, WritesAnEntryAndLeavesTheRest) {
  struct Case {
    std::string_view text;
    const char* section;
    const char* key;
    const char* value;
    std::string_view expected;
  };
  constexpr const char* gone = nullptr;
  const TempFolder folder;
  for (const Case& c : {
           Case{"", "T", "k", "1", "[T]\r\nk=1\r\n"},
           Case{"; c\n[U]\na=1", "T", "k", "1", "; c\n[U]\na=1\n[T]\nk=1\n"},
           Case{"[T]\r\n K = 0 \r\nj=2\r\n", "t", "k", "1", "[T]\r\nK=1\r\nj=2\r\n"},
           Case{"[T]\na=1\n; about b\n\n[U]\nk=2\n", "T", "k", "1", "[T]\na=1\nk=1\n; about b\n\n[U]\nk=2\n"},
           Case{"[T]\n\n[U]\n", "T", "k", "1", "[T]\nk=1\n\n[U]\n"},
           Case{"[T]\ra=1\rb=2", "T", "k", "1", "[T]\ra=1\rb=2\rk=1\r"},
           Case{"[T]\njunk\n\n", "T", "k", "1", "[T]\njunk\nk=1\n\n"},
           Case{"[T]\nk=0\nk=5\n[T]\nk=6", "T", "k", "", "[T]\nk=\nk=5\n[T]\nk=6"},
           Case{"[T]\r\nk=0\r\nj=1\r\n", "T", "K", gone, "[T]\r\nj=1\r\n"},
           Case{"[T]\nj=1", "T", "k", gone, "[T]\nj=1"},
           Case{"[T]\nk=0", "T", "k", "\xc3\xa4=;[x]", "[T]\nk=\xe4=;[x]"},
           Case{"[?]\r\na?=0\r\n", "ш", "Aш", "1", "[?]\r\na?=1\r\n"},
       }) {
    const std::string path = folder.write("t.ini", std::string(c.text));
    const auto value = c.value != gone ? std::optional<std::string_view>(c.value) : std::nullopt;
    EXPECT_TRUE(write_private_profile_string(c.section, c.key, value, path)) << c.text;
    EXPECT_EQ(folder.read("t.ini"),
              known_differences::expected(known_differences::writing, c.text, c.expected));
    EXPECT_EQ(private_profile_string(c.section, c.key, "gone", 255, path), value.value_or("gone")) << c.text;
  }
}

TEST(Profile, ReplacesASectionsEntriesAndKeepsItsComments) {
  struct Case {
    std::string_view text;
    std::string_view entries;
    std::string_view expected;
  };
  using namespace std::string_view_literals;
  const TempFolder folder;
  for (const Case& c : {
           Case{"[T]\n;1\na=1\n;2\nb=2\njunk\n\n[U]\nx=1\n"sv, "c=3\0d=4\0\0e=5\0"sv,
                "[T]\n;1\nc=3\nd=4\n;2\n\n[U]\nx=1\n"sv},
           Case{"[T]\na=1"sv, ""sv, "[T]\n"sv},
           Case{"[T]"sv, "a=1\0"sv, "[T]\r\na=1\r\n"sv},
           Case{"[U]\nx=1"sv, "a=1"sv, "[U]\nx=1\n[T]\na=1\n"sv},
           Case{"[U]\nx=1"sv, ""sv, "[U]\nx=1"sv},
           Case{"[T]\na=1\n[T]\nb=2\n"sv, "c=3"sv, "[T]\nc=3\n[T]\nb=2\n"sv},
       }) {
    const std::string path = folder.write("t.ini", std::string(c.text));
    EXPECT_TRUE(write_private_profile_section("t", c.entries, path) || c.text.empty()) << c.text;
    std::string written = folder.read("t.ini");
    if (const auto header = written.find("[t]"); header != std::string::npos) written[header + 1] = 'T';
    const bool changes = !c.entries.empty() || c.text != c.expected;
    EXPECT_EQ(written, changes ? known_differences::expected(known_differences::replacing, c.text, c.expected)
                               : c.expected);
  }
}

TEST(Profile, RefusesWhatCannotBeReadBack) {
  const TempFolder folder;
  const std::string path = folder.write("t.ini", "[T]\nk=1");
  const std::string nul("a\0b", 3);
  for (const std::string& name : {std::string("a\nb"), std::string("a\rb"), nul}) {
    EXPECT_FALSE(write_private_profile_string(name, "k", "v", path));
    EXPECT_FALSE(write_private_profile_string("T", name, "v", path));
    EXPECT_FALSE(write_private_profile_string("T", "k", name, path));
  }
  for (const char* key : {"", "  ", "a=b", ";k", "[k]"}) {
    EXPECT_FALSE(write_private_profile_string("T", key, "v", path)) << key;
  }
  EXPECT_FALSE(write_private_profile_string("T]", "k", "v", path));
  EXPECT_FALSE(write_private_profile_section("T", "a=1\n[U]", path));
  EXPECT_FALSE(write_private_profile_section("T", "[U]", path));
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  EXPECT_EQ(folder.read("t.ini"), "[T]\nk=1");
  EXPECT_EQ(write_private_profile_string("T", "k", "v", path), known_differences::writes_read_only_profiles);
  std::filesystem::permissions(path, std::filesystem::perms::owner_all);
  EXPECT_FALSE(write_private_profile_string("T", "k", "v", folder.file("none/t.ini")));
  EXPECT_FALSE(write_private_profile_string("T", "k", "v", folder.file(".")));
  EXPECT_FALSE(write_private_profile_string("T", "k", "v", ""));
  EXPECT_TRUE(write_private_profile_string("T", "k", std::nullopt, folder.file("u.ini")));
  EXPECT_FALSE(std::filesystem::exists(folder.file("u.ini")));
}

TEST(Profile, FindsTheLastOfManyKeys) {
  const TempFolder folder;
  std::string text = "[T]\n";
  for (int i = 0; i < 100'000; ++i) text += "key" + std::to_string(i) + "=" + std::to_string(i) + "\n";
  EXPECT_EQ(private_profile_string("T", "KEY99999", "", 255, folder.write("keys.ini", text)), "99999");
}

TEST(Profile, NeverSeesAHalfWrittenFile) {
  const TempFolder folder;
  const std::string path = folder.write("t.ini", "[T]\nk=old\nz=1\n");
  std::atomic<bool> done{false};
  std::thread writer([&] {
    for (int i = 0; i < 100; ++i) write_private_profile_string("T", "k", std::string(1 + i * 50, 'x'), path);
    done = true;
  });
  int missing = 0;
  while (!done) missing += private_profile_int("T", "z", 0, path) == 1 ? 0 : 1;
  writer.join();
  EXPECT_EQ(missing, 0);
}

}  // namespace
}  // namespace platform
