#include "import/follow_up.h"

#include <gtest/gtest.h>

#include "fakes/machine_shop.h"

namespace mQuorvex {
namespace {

struct Case {
  const char* what;
  std::int32_t machine;
  const char* style;
  const char* shift_x;  // field 90
  bool has_model;
  const char* refused;
  const char* saved;  // X, Y, Z, ToolStyle, UserModelFlag
  const char* shift;  // of the tool, by orientation 2 or position 11 from 11
  double gauge;       // the parameter ToolShiftZ
  const char* solids;
  bool refreshed;
};

std::string line_of(const Case& c) {
  std::vector<std::string> fields(field_count);
  fields[field_tool_style] = c.style;
  fields[field_tool_id] = "Turning#100";
  fields[field_tool_shift_x] = c.shift_x;
  fields[field_tool_shift_y] = "20.5";
  fields[field_tool_shift_z] = "-30";
  fields[field_user_model_flag] = "1";
  std::string line;
  for (const std::string& field : fields) line += field + ';';
  return line;
}

std::string saved_on(fakes::MachineShop& shop) {
  std::string text;
  for (const char* name :
       {"ToolShiftXSave", "ToolShiftYSave", "ToolShiftZSave", "ToolStyle", "UserModelFlag"}) {
    const auto property = shop.property(name);
    text +=
        (text.empty() ? "" : " ") + (property ? property->members["Value"].to_text() : std::string("none"));
  }
  return text;
}

TEST(FollowUp, BringsAnImportedToolInLine) {
  const char* saved = "10 20.5 -30 16 1";
  for (const Case& c : {
           Case{"lathe tool", 1, "16", "10", true, "", saved, "-30 20.5 -10", 9, "1:100.stl@Upper2", false},
           Case{"mill tool on a turret", 1, "5", "10", true, "", "10 20.5 -30 5 1", "10 20.5 -30", 9,
                "1:100.stl@Upper2", true},
           Case{"not quite a lathe style", 1, "016", "10", false, "", "10 20.5 -30 016 1", "-30 20.5 -10", 9,
                "", true},
           Case{"mill", 2, "5", "10", true, "", "10 20.5 -30 5 1", "7 8 9", 64.125, "2:100.stl@Lower2", true},
           Case{"no number", 1, "16", "x", false, "", "0 20.5 -30 16 1", "-30 20.5 0", 9, "", false},
           Case{"a comma cuts", 1, "16", "10,7", false, "", saved, "-30 20.5 -10", 9, "", false},
           Case{"one property refused", 1, "16", "10", true, "Tool.CustomProperties.ToolShiftYSave.Value",
                "10 2 -30 16 1", "-30 8 -10", 9, "1:100.stl@Upper2", false},
           Case{"machine refused: both roads", 0, "5", "10", true, "Document.MachineType", "10 20.5 -30 5 1",
                "10 20.5 -30", 64.125, "2:100.stl@Lower2", true},
           Case{"spindle refused", 2, "5", "10", true, "MillSetup.SpindleSize", "10 20.5 -30 5 1", "7 8 9",
                -20, "2:100.stl@Lower2", true},
           Case{"station refused", 1, "16", "10", true, "Tool.Station", saved, "-30 20.5 -10", 9,
                "2:100.stl@Lower2", false},
           Case{"shape refused", 1, "5", "10", true, "ShapeManager.RefreshToolShape", "10 20.5 -30 5 1",
                "10 20.5 -30", 9, "1:100.stl@Upper2", false},
       }) {
    fakes::MachineShop shop;
    const auto manager = std::make_shared<fakes::Bag>(shop.world, "ShapeManager");
    global::ShapeManager() = host::ShapeManager(automation::Ref(manager));
    shop.document->members["MachineType"] = c.machine;
    shop.tool->members["Style"] = std::stoi(c.style);
    shop.tool->members["Turret"] = 2;
    for (const auto& station : shop.mill_stations->items) station->members["ToolReference"] = 2;
    if (c.has_model) shop.make_model("100.stl");
    if (std::string_view(c.solids).starts_with("2:")) shop.add_solid(2, "100.stl", 2);
    shop.world.refused = {c.refused};
    formats::ExportFile file(line_of(c) + "\r\n");
    ASSERT_TRUE(file.next_data_line());
    shapes::MachineView machine;
    FinishImportedTool(host::Tool(automation::Ref(shop.tool)), ToolRecord(file.fields()), machine);
    global::ShapeManager().release();
    shop.world.refused.clear();
    EXPECT_EQ(saved_on(shop), c.saved) << c.what;
    EXPECT_EQ(shop.shift(), c.shift) << c.what;
    EXPECT_DOUBLE_EQ(shop.tool->named["ToolShiftZ"]->number("Value"), c.gauge) << c.what;
    EXPECT_EQ(shop.solids(), c.solids) << c.what;
    EXPECT_EQ(shop.world.all_writes().find("RefreshToolShape(Tool,0)") != std::string::npos, c.refreshed)
        << c.what;
  }
}

}  // namespace
}  // namespace mQuorvex
