#include "deskhost/model/catalogue.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "tests/deskhost/model_test.h"

namespace deskhost {
namespace {

TEST(Catalogue, KeepsValuesByKind) {
  struct Case {
    const char* parameter;
    Value given;
    const char* kept;  // null: refused
  };
  const Case cases[] = {
      {"ToolID", "Mill D10#1", "Text:Mill D10#1"},
      {"ToolID", "", "Text:"},
      {"ToolID", 7, "Text:7"},
      {"CustomSetting6", " 13 ", "Text: 13 "},
      {"ToolDiameter", "10.0", "R8:10"},
      {"ToolDiameter", " -1.5e1 ", "R8:-15"},
      {"ToolDiameter", std::int16_t{0}, "R8:0"},
      {"ToolDiameter", "", nullptr},
      {"ToolDiameter", Value(), nullptr},
      {"ToolDiameter", "10,5", nullptr},
      {"ToolDiameter", "10 mm", nullptr},
      {"ToolDiameter", "1e400", nullptr},
      {"ToolDiameter", INFINITY, nullptr},
      {"ToolDiameter", automation::nothing, nullptr},
      {"ThreadPerUnit", "11.5", "R8:11.5"},
      {"ToolNumber", "2.5", "I4:2"},
      {"ToolNumber", 3.5, "I4:4"},
      {"ToolNumber", "2147483647.4", "I4:2147483647"},
      {"ToolNumber", "2147483647.5", nullptr},
      {"ToolNumber", "x", nullptr},
      {"Coolant", " 3 ", "I4:3"},
      {"Coolant", 3.0, "I4:3"},
      {"Coolant", "3.5", "Text:3.5"},
      {"Coolant", 3.5, "Text:3.5"},
      {"Coolant", "", "Text:"},
      {"Coolant", "3000000000", "Text:3000000000"},
      {"ToolTip", "flat", "Text:flat"},
      {"LatheToolOrientation", "13", "I4:13"},
      {"LatheToolOrientation", "", nullptr},
      {"LatheToolOrientation", "3h", nullptr},
      {"Orientation", 1.5, nullptr},
  };
  Desk desk;
  for (const Case& each : cases) {
    SCOPED_TRACE(std::string(each.parameter) + " " + automation::name_of(each.given.kind()));
    const auto tool = Tool::make(desk, 1);
    const std::string before = shown(read(*tool, each.parameter));
    if (each.kept == nullptr) {
      EXPECT_THROW(write(*tool, each.parameter, each.given), Failure);
      EXPECT_EQ(shown(read(*tool, each.parameter)), before);
    } else {
      write(*tool, each.parameter, each.given);
      EXPECT_EQ(shown(read(*tool, each.parameter)), each.kept);
    }
  }
}

TEST(Catalogue, GivesEachClassItsParameters) {
  struct Case {
    const char* parameter;
    bool turning, milling, neutral;
  };
  const Case cases[] = {
      {"InsertID", true, false, false},
      {"INSERTHEIGHT", true, false, false},
      {"NumberOfInserts", false, true, false},
      {"HolderShankDiameter", true, true, true},
      {"ShankDiameter", false, true, false},
      {"ThreadPerUnit", false, true, false},
      {"ToolId", true, true, true},
      {"LatheToolOrientation", true, true, true},
      {"Orientation", true, true, true},
      {"ReliefAngle", true, false, false},
      {"HolderClearanceAngle", true, true, true},
      {"CustomSetting6", true, true, true},
      {"ToolClass", false, false, false},
      {"CustomSetting11", false, false, false},
  };
  Desk desk;
  for (const auto& [tool_class, which] : {std::pair{24, 0}, {25, 1}, {20, 1}, {15, 2}, {21, 2}}) {
    const auto tool = Tool::make(desk, tool_class);
    for (const Case& each : cases) {
      const bool expected = which == 0 ? each.turning : which == 1 ? each.milling : each.neutral;
      bool found = true;
      try {
        item(*tool, each.parameter);
      } catch (const Failure&) {
        found = false;
      }
      EXPECT_EQ(found, expected) << each.parameter << " in class " << tool_class;
    }
  }
  for (const int wrong : {0, 26, -1}) EXPECT_THROW(Tool::make(desk, wrong), Failure) << wrong;
}

TEST(Catalogue, NumbersItemsOfAClassFromOneWithCodesOfTheirOwn) {
  Desk desk;
  const auto tool = Tool::make(desk, 16);
  const auto count = get(*tool, "Count").to_int32();
  std::set<std::int16_t> codes;
  for (std::int32_t n = 1; n <= count; ++n) codes.insert(get(*item(*tool, n), "Code").to_int16());
  EXPECT_EQ(codes.size(), static_cast<std::size_t>(count));
  EXPECT_GT(count, 80);
  EXPECT_THROW(item(*tool, 0), Failure);
  EXPECT_THROW(item(*tool, count + 1), Failure);
  EXPECT_EQ(get(*item(*tool, "toolid"), "Code").to_int16(), get(*item(*tool, 2), "Code").to_int16());
}

}  // namespace
}  // namespace deskhost
