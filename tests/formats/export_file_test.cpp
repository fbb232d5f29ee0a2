#include "formats/export_file.h"

#include <gtest/gtest.h>

#include <vector>

namespace formats {
namespace {

std::string line_of(std::size_t fields, const std::string& first = "16") {
  std::string line = first;
  for (std::size_t i = 1; i < fields; ++i) line += ';' + std::to_string(i);
  return line;
}

TEST(ExportFile, TellsDataLinesFromTheOthers) {
  struct Case {
    std::string line;
    bool is_data;
  };
  for (const Case& c : {Case{"", false}, Case{"   ", false}, Case{"*", false}, Case{"  * x", false},
                        Case{"FileVersion:\"2.0\"", false}, Case{"   FileVersion:", false}, Case{"\t", true},
                        Case{"\t* x", true}, Case{"fileversion:1", true}, Case{"FileVersion", true},
                        Case{" 16;1", true}, Case{"\n", true}, Case{";", true}}) {
    EXPECT_EQ(ExportFile(c.line + "\r\n").next_data_line(), c.is_data) << '"' << c.line << '"';
  }
}

TEST(ExportFile, EndsLinesAtCrAndCrLfAlone) {
  const auto first_fields = [](const std::string& bytes) {
    std::vector<std::string> found;
    ExportFile file(bytes);
    while (file.next_data_line()) found.push_back(file.fields().text(0));
    return found;
  };
  using Lines = std::vector<std::string>;
  EXPECT_EQ(first_fields("a;1\r\nb;2\rc;3"), (Lines{"a", "b", "c"}));
  EXPECT_EQ(first_fields("a;1\nb;2\r"), (Lines{"a"})) << "a lone LF belongs to its line";
  EXPECT_EQ(first_fields("\r\r\n\n\r\n"), (Lines{"\n"}));
  EXPECT_EQ(first_fields(""), Lines{});
  EXPECT_EQ(first_fields("\xDC;\r\n"), (Lines{"Ü"}));
}

TEST(ExportFile, SplitsLinesOfEveryLength) {
  // Fields of growing width move the semicolons over every place of a block.
  for (std::size_t fields = 1; fields <= 140; ++fields) {
    for (std::size_t width : {0U, 1U, 7U, 63U}) {
      std::vector<std::string> expected;
      std::string line = "x";
      for (std::size_t i = 1; i < fields; ++i) line += ";" + std::string((i * width) % 71, 'y');
      std::size_t begin = 0;
      while (expected.size() < field_count) {
        const std::size_t end = line.find(';', begin);
        expected.push_back(line.substr(begin, end - begin));
        if (end == line.npos) break;
        begin = end + 1;
      }
      LineFields split;
      split.split(line);
      ASSERT_EQ(split.count(), expected.size()) << fields << " fields, width " << width;
      for (std::size_t i = 0; i < expected.size(); ++i)
        ASSERT_EQ(split.bytes(i), expected[i]) << fields << ' ' << i;
    }
  }
}

TEST(ExportFile, CountsTheFieldsThatALineNeeds) {
  LineFields fields;
  fields.split(line_of(126));
  EXPECT_EQ(fields.count(), 126U);
  const std::string complete = line_of(126) + ";";
  fields.split(complete);
  EXPECT_EQ(fields.count(), 127U);
  EXPECT_EQ(fields.bytes(126), "");
  const std::string longer = line_of(130, "  16");
  fields.split(longer);
  EXPECT_EQ(fields.count(), 127U);
  EXPECT_EQ(fields.bytes(126), "126");
  EXPECT_EQ(fields.bytes(0), "  16") << "leading blanks stay";
}

}  // namespace
}  // namespace formats
