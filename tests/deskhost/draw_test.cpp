#include "deskhost/picture/draw.h"

#include <gtest/gtest.h>

#include <cmath>

#include "deskhost/picture/side_arrows.h"
#include "deskhost/picture/svg.h"

namespace deskhost {
namespace {

std::size_t count(const std::string& text, std::string_view what) {
  std::size_t found = 0;
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++found;
  return found;
}

struct Drawn : testing::Test {
  void add_tool(const char* id, std::int32_t turret, std::int32_t station, double x, double z) {
    auto tool = Tool::make(*desk, 16);
    const auto set = [&](const char* name, const automation::Value& value) {
      tool->write_quietly(*catalogue::find(name), value);
    };
    set("ToolID", id);
    set("TurretID", turret);
    set("StationID", station);
    set("LatheToolOrientation", 17);
    set("ToolShiftX", x);
    set("ToolShiftY", 1.25);
    set("ToolShiftZ", z);
    document.tools().append(tool);
  }

  DeskRef desk = std::make_shared<Desk>();
  Document document{desk, "A <&> \"B\".esp"};
};

TEST_F(Drawn, ShowsEachToolAtItsStationAndTellsOfTheOthers) {
  for (int number = 1; number <= 2; ++number) {
    auto turret = std::make_shared<Turret>(number);
    for (int place = 1; place <= 12; ++place) {
      auto station = std::make_shared<Station>(number, place);
      station->radial_offset = 200;
      station->turret_angle = 0.5 * place;
      turret->stations->items.push_back(station);
    }
    document.machine_setup->turrets->items.push_back(turret);
  }
  const auto solid = document.machine_setup->turrets->items[0]->solids->add();
  solid->name = "1.stl";
  solid->color = 186 + 256 * 205 + 65536 * 201;
  add_tool("<T>&#1", 1, 12, 25, -60);
  add_tool("no shift#2", 2, 1, 0, 0);
  add_tool("beyond#3", 2, 13, 1, 1);
  add_tool("no turret#4", 7, 1, 1, 1);
  const std::string page = draw_document(document);
  EXPECT_EQ(count(page, "<path "), 9U) << "two arrows for the axes of each view, and the one shift";
  EXPECT_EQ(count(page, "class=\"noshift\""), 1U);
  EXPECT_EQ(count(page, ">17 (3H)<"), 2U);
  EXPECT_EQ(count(page, ">1.25<"), 2U);
  EXPECT_EQ(count(page, "&lt;T&gt;&amp;#1"), 1U);
  EXPECT_EQ(count(page, "A &lt;&amp;&gt; &quot;B&quot;.esp"), 2U);
  EXPECT_EQ(count(page, "rgb(186,205,201)"), 1U) << "off its station: in the table alone";
  EXPECT_EQ(count(page, "2 tools on no station"), 1U);
  EXPECT_EQ(count(page, ">beyond#3<") + count(page, ">no turret#4<"), 2U);
}

TEST_F(Drawn, GivesLengthsInTheToolsOwnUnit) {
  auto turret = std::make_shared<Turret>(1);
  turret->stations->items.push_back(std::make_shared<Station>(1, 1));
  document.machine_setup->turrets->items.push_back(turret);
  add_tool("inch#1", 1, 1, 2.5, 0);
  document.tools().all()[0]->write_quietly(*catalogue::find("ToolUnit"), inches);
  EXPECT_EQ(count(draw_document(document), ">2.5 in<"), 1U);
}

TEST(SideArrows, ThoseThatLieOnOneAnotherGoApart) {
  std::vector<ShiftArrow> arrows{{0, 0, 100, 0, 1}, {20, 1, 60, 1, 2}, {0, 0, 0, 100, 3}, {0, 0, 90, 2, 4}};
  spread(arrows);
  EXPECT_EQ(arrows[0].y, 0);
  EXPECT_GT(std::abs(arrows[1].y - arrows[0].y), 5);
  EXPECT_EQ(arrows[2].x, 0) << "it goes another way";
  EXPECT_LT(arrows[3].y * arrows[1].y, 0) << "to the other side";
}

TEST_F(Drawn, TellsWhereThereIsNothingToShow) {
  document.machine_setup = nullptr;
  EXPECT_EQ(count(draw_document(document), "no machine setup to show"), 1U);
}

TEST(Svg, NumbersStayShort) {
  EXPECT_EQ(short_number(-0.0001), "0");
  EXPECT_EQ(short_number(1.0 / 3), "0.333");
  EXPECT_EQ(escaped("a\n<"), "a?&lt;");
}

}  // namespace
}  // namespace deskhost
