#include "simulation/turn_solids.h"

#include <gtest/gtest.h>

#include <cmath>

#include "fakes/machine_shop.h"
#include "platform/component_runtime.h"
#include "platform/known_differences.h"

namespace {

using automation::Ref;
using automation::Value;

/// The shop's tool as a simulated one, with its solid, on a scene whose turret origin is (100, 200, 300).
class Theatre : public fakes::MachineShop {
 public:
  Theatre() {
    auto scene = simulation->child("Scene", "Scene");
    sim_tools = scene->child("SimTools", "SimTools");
    solids = scene->child("SimSolids", "SimSolids");
    sim_turrets = scene->child("SimTurrets", "SimTurrets");
    add_sim_turret("Upper", 1);  // the last one of a name counts
    add_sim_turret("Upper", 100);
    add_sim_turret("Lower", 9);
    solids->add("Solid")->members["Name"] = "100.stl";
    solids->add("Other")->members["Name"] = "100.STL";
    sim_tools->add("SimTool")->members["Name"] = "Turning#100";
    platform::offer_classes([this](std::string_view name) -> Ref {
      ++made;
      return std::make_shared<fakes::Bag>(world, std::string(name.substr(name.rfind('.') + 1)));
    });
  }
  ~Theatre() { platform::offer_classes({}); }

  void add_sim_turret(const std::string& name, double x) {
    auto turret = sim_turrets->add("SimTurret");
    turret->members["Name"] = name;
    turret->child("Origin", "Origin")->members = {{"X", x}, {"Y", 200.0}, {"Z", 300.0}};
  }
  void stand(std::int32_t present, const Value& database) {
    tool->parameter("LatheToolOrientation", present);
    tool->parameter("CustomSetting6", database);
  }
  /// The turns as "Y1 Z2": axis (Y stands for the one across the turret) and quarters.
  std::string turns() {
    world.writes.clear();
    simulation::turn_solids(host::Simulation(Ref(simulation)));
    std::string text, axis;
    for (const std::string& line : world.writes) {
      if (line.starts_with("Vector.SetXYZ(")) axis = line == "Vector.SetXYZ(0,0,1)" ? "Z" : "Y";
      if (line.starts_with("Solid.Rotate("))
        text += axis + (line.find(",1.57") != line.npos ? "1" : "2") + " ";
    }
    if (!text.empty()) text.pop_back();
    return text;
  }

  int made = 0;
  std::shared_ptr<fakes::Bag> simulation = std::make_shared<fakes::Bag>(world, "Simulation");
  std::shared_ptr<fakes::Bag> sim_tools, solids, sim_turrets;
};

TEST(TurnSolids, BringsThemToThePresentPosition) {
  struct Case {
    std::int32_t present;
    Value database;
    const char* turns;
  };
  constexpr const char* all = "Y1 Y2 Z2 Z2";
  for (const Case& c : {Case{18, "11", ""}, Case{11, "17", "Y1 Z2"}, Case{16, "16", ""}, Case{11, "11", all},
                        Case{11, "12", ""}, Case{11, "13", "Y2 Z2 Z2"}, Case{14, "16", "Y1 Y2 Z2"},
                        Case{18, "13", "Y1"}, Case{13, "15", ""}, Case{14, "15", "Y1 Z2"},
                        Case{18, "18", all}, Case{2, Value(), "Y1"}, Case{19, "11", ""}}) {
    Theatre theatre;
    theatre.stand(c.present, c.database);
    EXPECT_EQ(theatre.turns(), c.turns) << c.present << " from " << c.database.to_text();
    EXPECT_EQ(theatre.made, *c.turns == 0 ? 0 : 2) << "one point and one vector";
    EXPECT_EQ(theatre.world.writes.back(), "Document.Refresh(missing,missing)");
  }
}

TEST(TurnSolids, TurnsAboutACentreOnTheStation) {
  Theatre theatre;
  auto& station = theatre.part(1, "Stations")->items[1]->members;
  station["TurretAngle"] = std::acos(-1.0) / 2;
  station["TiltAngle"] = std::acos(-1.0) / 6;
  theatre.stand(18, "13");
  theatre.turns();
  // (100 + 10 cos a, 200 - 10 sin a + 20 sin b, 300 + 20 cos b), and (sin a, cos a, 0)
  EXPECT_EQ(theatre.world.all_writes(),
            "Point.SetXYZ(100,200,317.320508075689)\n"
            "Vector.SetXYZ(1," +
                std::string(known_differences::cosine_of_a_right_angle) +
                ",0)\n"
                "Solid.Rotate(Point,Vector,1.5707963267949)\n"
                "Document.Refresh(missing,missing)\n");
}

TEST(TurnSolids, LeavesAloneWhatItCannotPlace) {
  struct Case {
    const char* what;
    std::function<void(Theatre&)> change;
    const char* turns;
  };
  for (const Case& c : std::initializer_list<Case>{
           {"an old host", [](Theatre& t) { t.application->members["MajorVersion"] = 15; }, ""},
           {"the first host with a scene", [](Theatre& t) { t.application->members["MajorVersion"] = 16; },
            "Y1"},
           {"a tool that the document lacks", [](Theatre& t) { t.tool->members["Name"] = "turning#100"; },
            ""},
           {"a turret that the scene lacks",
            [](Theatre& t) {
              t.sim_turrets->items.erase(t.sim_turrets->items.begin(), t.sim_turrets->items.begin() + 2);
            },
            ""},
           {"two tools of one model",
            [](Theatre& t) {
              t.add_tool("Second", "Boring#100")->parameter("LatheToolOrientation", 17);
              t.sim_tools->add("SimTool")->members["Name"] = "Boring#100";
            },
            "Y1 Y2 Z2"}}) {
    Theatre theatre;
    theatre.stand(18, "13");
    c.change(theatre);
    EXPECT_EQ(theatre.turns(), c.turns) << c.what;
  }
}

TEST(TurnSolids, AFailureGoesToTheHost) {
  for (const auto& [database, refused] : {std::pair{"1V", ""},
                                          {"", ""},
                                          {"13", "Solid.Rotate"},
                                          {"13", "Origin.X"},
                                          {"13", "UpperStations.Item"},
                                          {"13", "SimTurret.Name"}}) {
    Theatre theatre;
    theatre.stand(15, database);
    theatre.world.refused = {refused};
    EXPECT_THROW(theatre.turns(), automation::Failure) << database << " " << refused;
  }
}

TEST(TurnSolids, ReadsEachNameOnce) {
  Theatre theatre;
  for (int copy = 0; copy < 5; ++copy) theatre.sim_tools->add("SimTool")->members["Name"] = "Turning#100";
  theatre.stand(18, "13");
  theatre.turns();
  EXPECT_EQ(theatre.world.reads["Solid.Name"] + theatre.world.reads["Tool.Name"], 2);
}

}  // namespace
