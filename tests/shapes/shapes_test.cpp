#include <gtest/gtest.h>

#include "fakes/machine_shop.h"
#include "platform/component_runtime.h"
#include "platform/files.h"
#include "shapes/orientation.h"
#include "shapes/tool_shift.h"
#include "shapes/user_models.h"
#include "support/worlds.h"

using automation::Value;
using fakes::MachineShop;

namespace {

host::Tool view(const std::shared_ptr<fakes::Bag>& tool) {
  return host::Tool(automation::Ref(tool));
}

TEST(ToolShift, FollowsTheSavedVector) {
  struct Case {
    std::int32_t style;
    Value present, database;
    const char* shift;
  };
  for (const Case& c : {
           Case{1, 2, "", "1 2 3"},         // as saved
           Case{1, 1, "", "-1 2 -3"},       //
           Case{1, 7, "", "2 3 1"},         //
           Case{1, 5, "", "7 8 9"},         // no row
           Case{16, 13, "11", "-3 2 1"},    //
           Case{16, 11, " 14 ", "1 2 3"},   //
           Case{24, 18, "17", "1 2 3"},     //
           Case{16, 11, "17", "3 2 -1"},    // -2 isn't below -2
           Case{16, 11, "16", "3 2 1"},     //
           Case{16, 15, "15", "3 2 -1"},    //
           Case{16, 13, "15", "7 2 9"},     // no row: Y alone
           Case{16, 23, "11", "7 2 9"},     //
           Case{16, 11, Value(), "7 2 9"},  // never filled
           Case{16, 13, "11.4", "-3 2 1"},  // rounds
           Case{16, 11, "", "7 8 9"},       // not a number: nothing at all
           Case{16, 11, "1V", "7 8 9"},     //
           Case{20, 1, "1V", "-1 2 -3"},    // only lathe styles look at it
       }) {
    MachineShop shop;
    shop.tool->members["Style"] = c.style;
    shop.tool->parameter(c.style >= 16 && c.style != 20 ? "LatheToolOrientation" : "Orientation", c.present);
    shop.tool->parameter("CustomSetting6", c.database);
    for (int turn = 1; turn <= 2; ++turn) {
      try {
        shapes::ApplyToolShift(view(shop.tool));
      } catch (const automation::Failure&) {
      }
      EXPECT_EQ(shop.shift(), c.shift) << "style " << c.style << " present " << c.present.to_text()
                                       << " from " << c.database.to_text() << " turn " << turn;
    }
  }
}

TEST(ToolShift, GaugesTheSpindle) {
  struct Case {
    std::int32_t size, reference, unit, station;
    double z;
    const char* refused = "";
  };
  for (const Case& c :
       {Case{40, 2, 71, 2, 64.125}, Case{35, 2, 71, 2, -20}, Case{40, 2, 70, 2, 84.125 / 25.4 - 20},
        Case{40, 0, 71, 2, 9}, Case{40, 1, 71, 2, 9}, Case{60, 2, 71, 0, 177.8 - 5},
        Case{60, 2, 71, 3, 177.8 - 5}, Case{60, 2, 71, 2, 177.8, "Mill2.AxialOffset"},
        Case{60, 2, 71, 2, -20, "MillSetup.SpindleSize"},
        Case{40, 2, 71, 2, 84.125 / 25.4 - 20, "Document.UnitSystem"}}) {
    MachineShop shop;
    shop.mill->members["SpindleSize"] = c.size;
    shop.document->members["UnitSystem"] = c.unit;
    for (const auto& station : shop.mill_stations->items) station->members["ToolReference"] = c.reference;
    shop.mill_stations->items[0]->members["AxialOffset"] = 5.0;
    shop.tool->members["Station"] = c.station;
    shop.world.refused = {c.refused};
    shapes::ApplySpindleGauge(view(shop.tool));
    EXPECT_DOUBLE_EQ(shop.tool->named["ToolShiftZ"]->number("Value"), c.z)
        << "size " << c.size << " reference " << c.reference << " station " << c.station << " " << c.refused;
  }
}

/// Writes QVEsprit.cfg beside this program, and takes it away again.
class Settings {
 public:
  explicit Settings(const std::string& always_to_tip) {
    if (!always_to_tip.empty())
      std::ofstream(path_) << "[Default]\nLathToolAlwaysToTip=" << always_to_tip << "\n";
  }
  ~Settings() { std::filesystem::remove(path_); }
  Settings(const Settings&) = delete;
  Settings& operator=(const Settings&) = delete;

 private:
  std::filesystem::path path_ =
      std::filesystem::path(platform::native_path(platform::component_folder())) / "QVEsprit.cfg";
};

TEST(Orientation, UpdatesTheShiftOfATurnedTool) {
  struct Case {
    const char* what;
    std::int32_t machine, reference, turret = 1, station = 2;
    const char* shift = "";
    const char* refused = "";
    std::int32_t recorded = 0;
    const char* always_to_tip = "";
  };
  // The tool gets (3, 2, -1) where its shift is applied. Stations other than the one in the case refer to 1.
  for (const Case& c : {
           Case{"tip", 1, 0, 1, 2, "3 2 -1"},
           Case{"spindle", 1, 2, 1, 2, "0 0 0"},
           Case{"neither", 1, 1, 1, 2, "7 8 9"},
           Case{"orientation as recorded", 1, 0, 1, 2, "7 8 9", "", 11},
           Case{"recorded can't be read", 1, 0, 1, 2, "3 2 -1",
                "Tool.CustomProperties.OldLatheToolOrientation.Value", 11},
           Case{"no such machine", 0, 0, 1, 2, "7 8 9"},
           Case{"turret beyond", 1, 2, 7, 2, "0 0 0"},
           Case{"machine can't be read", 0, 0, 1, 2, "3 2 -1", "Document.MachineType"},
           Case{"reference can't be read", 1, 1, 1, 2, "3 2 -1", "Upper2.ToolReference"},
           Case{"no station", 1, 1, 1, 2, "3 2 -1", "UpperStations.Item"},
           Case{"shift can't be set", 1, 2, 1, 2, "7 0 0", "Tool.ToolShiftX"},
           Case{"ended by Z", 1, 0, 1, 2, "3 8 9", "Tool.ToolShiftZ"},
           Case{"always to tip", 1, 2, 1, 2, "3 2 -1", "", 0, "1"},
           Case{"not quite always", 1, 2, 1, 2, "0 0 0", "", 0, "01"},
       }) {
    const Settings settings(c.always_to_tip);
    MachineShop shop;
    for (int turret = 1; turret <= 2; ++turret)
      for (const auto& station : shop.part(turret, "Stations")->items) station->members["ToolReference"] = 1;
    shop.part(1, "Stations")->items[1]->members["ToolReference"] = c.reference;
    shop.document->members["MachineType"] = c.machine;
    shop.tool->members["Turret"] = c.turret;
    shop.tool->members["Station"] = c.station;
    shop.record("OldLatheToolOrientation", c.recorded);
    shop.record("OldOrientation", 99);
    shop.world.refused = {c.refused};
    shapes::MachineView machine;
    shapes::UpdateToolOrientation(view(shop.tool), machine);
    EXPECT_EQ(shop.shift(), c.shift) << c.what;
    if (c.always_to_tip == std::string("1")) {
      EXPECT_EQ(shop.part(1, "Stations")->items[1]->number("ToolReference"), 0) << c.what;
    }
  }
}

TEST(Orientation, OnAMillOnlyTheTipCounts) {
  for (const auto& [reference, shift] : {std::pair{0, "3 2 -1"}, {1, "7 8 9"}, {2, "7 8 9"}}) {
    const Settings settings("1");
    MachineShop shop;
    shop.document->members["MachineType"] = 2;
    shop.tool->members["Station"] = 9;
    shop.mill_stations->items[0]->members["ToolReference"] = reference;
    shapes::MachineView machine;
    shapes::UpdateToolOrientation(view(shop.tool), machine);
    EXPECT_EQ(shop.shift(), shift) << reference;
    EXPECT_EQ(shop.mill_stations->items[0]->number("ToolReference"), reference);
  }
}

struct ModelCase {
  const char* what;
  std::vector<std::tuple<int, const char*, int>> before;  // turret, model, station
  int station, turret;
  const char* after;
  const char* refused = "";
};

void check_models(const std::vector<ModelCase>& cases,
                  void (*operation)(const std::string&, int, int, shapes::MachineView&), bool file_is_there) {
  for (const ModelCase& c : cases) {
    MachineShop shop;
    if (file_is_there) shop.make_model("100.stl");
    for (const auto& [turret, name, station] : c.before) shop.add_solid(turret, name, station);
    shop.world.refused = {c.refused};
    shapes::MachineView machine;
    operation("100.stl", c.station, c.turret, machine);
    shop.world.refused.clear();
    EXPECT_EQ(shop.solids(), c.after) << c.what << "\n" << shop.world.all_writes();
  }
}

TEST(UserModels, AreAttached) {
  check_models(
      {
          {"new", {}, 2, 1, "1:100.stl@Upper2"},
          {"names differ in case", {{1, "100.STL", 2}}, 2, 1, "1:100.STL@Upper2 1:100.stl@Upper2"},
          {"moved", {{1, "100.stl", 1}}, 3, 1, "1:100.stl@Upper3"},
          {"off its station", {{1, "100.stl", 1}}, 0, 1, "1:100.stl@none"},
          {"beyond the stations", {{1, "100.stl", 1}}, 4, 1, "1:100.stl@none"},
          {"on another turret, same station", {{2, "100.stl", 2}}, 2, 1, ""},
          {"on another turret, another station", {{2, "100.stl", 1}}, 2, 1, "2:100.stl@Upper2"},
          {"the last of two",
           {{1, "100.stl", 1}, {1, "100.stl", 3}},
           2,
           1,
           "1:100.stl@Upper1 1:100.stl@Upper2"},
          {"a name that can't be read is the one", {{1, "99.stl", 1}}, 2, 1, "1:99.stl@Upper2", "Solid.Name"},
          {"an entry that can't be had ends its turret",
           {{1, "100.stl", 1}, {2, "100.stl", 1}},
           2,
           1,
           "1:100.stl@Upper2 2:100.stl@Lower1",
           "LowerSolids.Item"},
          {"no turrets", {{1, "100.stl", 1}}, 2, 1, "1:100.stl@Upper1", "Document.MachineSetup"},
          {"machine can't be read", {}, 2, 1, "", "Document.MachineType"},
      },
      shapes::AttachUserModel, true);
  check_models({{"the file has gone", {{2, "100.stl", 2}, {2, "100.stl", 1}}, 2, 2, "2:100.stl@Lower1"}},
               shapes::AttachUserModel, false);
}

TEST(UserModels, AreRemoved) {
  check_models(
      {
          {"at most one",
           {{1, "100.stl", 2}, {1, "100.stl", 2}, {2, "100.stl", 2}},
           2,
           1,
           "1:100.stl@Upper2 1:100.stl@Upper2"},
          {"goes on behind another station",
           {{1, "100.stl", 2}, {2, "100.stl", 1}},
           2,
           9,
           "2:100.stl@Lower1"},
          {"at another station", {{1, "100.stl", 1}}, 2, 1, "1:100.stl@Upper1"},
          {"without a station", {{1, "100.stl", 0}}, 2, 1, ""},
          {"on a station that its turret lacks", {{2, "100.stl", 13}}, 2, 1, ""},
          {"on one of the other turret that its own has too", {{2, "100.stl", 12}}, 1, 1, "2:100.stl@Upper2"},
          {"a name that can't be read", {{1, "99.stl", 2}}, 2, 1, "", "Solid.Name"},
          {"the host keeps it", {{1, "100.stl", 2}}, 2, 1, "1:100.stl@Upper2", "UpperSolids.Remove"},
      },
      shapes::RemoveUserModel, true);
}

TEST(UserModels, AMillHasNone) {
  MachineShop shop;
  shop.make_model("100.stl");
  shop.add_solid(1, "100.stl", 2);
  shop.document->members["MachineType"] = 2;
  shapes::MachineView machine;
  shapes::AttachUserModel("100.stl", 1, 1, machine);
  shapes::RemoveUserModel("100.stl", 2, 1, machine);
  EXPECT_EQ(shop.world.all_writes(), "");
}

TEST(UserModels, ANewOneIsWrittenInOrder) {
  MachineShop shop;
  shop.make_model("100.stl");
  shapes::MachineView machine;
  shapes::AttachUserModel("100.stl", 0, 2, machine);
  EXPECT_EQ(shop.world.all_writes(),
            "LowerSolids.Add()\nSolid.Name=100.stl\nSolid.Color=13225402\nSolid.Shown=True\n"
            "Solid.ModelPath=" +
                shop.models.string() + "\\100.stl\nSolid.Station=nothing\nSolid.Unmounted=True\n");
}

/// Models that come, move and go on two turrets, while names are refused and others change entries. What is
/// kept for all of a run has to come to what entries that are read anew each time come to.
std::string keep_models(unsigned seed, bool anew) {
  worlds::Random random(seed);
  MachineShop shop;
  std::vector<std::string> refusable{"UpperSolids.Count", "LowerSolids.Count", "UpperSolids.Add",
                                     "LowerSolids.Remove"};
  const auto model = [&] { return std::to_string(random.below(8)) + ".stl"; };
  for (int file = 0; file < 6; ++file) shop.make_model(std::to_string(file) + ".stl");
  for (int i = random.below(20); i > 0; --i) {
    const int turret = 1 + random.below(2);
    shop.add_solid(turret, model(), random.below(3));
    refusable.push_back("Solid" + std::to_string(i) + ".Name");
    auto& entry = shop.part(turret, "Solids")->items.back();
    const auto members = entry->members;
    entry = std::make_shared<fakes::Bag>(shop.world, "Solid" + std::to_string(i));
    entry->members = members;
  }
  worlds::refuse_some(random, shop.world, refusable, random.of<int>({4, 20, 1000}));
  std::string log;
  shapes::MachineView kept;
  for (int step = 0; step < 10; ++step) {
    auto& entries = shop.part(1 + random.below(2), "Solids")->items;
    const int change = random.below(12);
    if (change == 0 && !entries.empty()) entries.erase(entries.begin());
    if (change == 1 && !entries.empty()) entries[0]->members["Name"] = "x" + std::to_string(step);
    shapes::MachineView fresh;
    const auto operation = random.once_in(3) ? shapes::RemoveUserModel : shapes::AttachUserModel;
    const std::string name = model();
    const int station = random.below(3);
    operation(name, station, 1 + random.below(2), anew ? fresh : kept);
    log += shop.solids() + "\n";
  }
  return log;
}

TEST(UserModels, AreFoundAsByAPlainWalk) {
  worlds::compare(keep_models);
}

}  // namespace
