#include "simulation/turn_solids.h"

#include <gtest/gtest.h>

#include <cmath>

#include "fakes/machine_shop.h"
#include "formats/tool_identity.h"
#include "platform/component_runtime.h"
#include "platform/known_differences.h"
#include "support/worlds.h"

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
           {"a tool that the document lacks needs no solids",
            [](Theatre& t) {
              t.tool->members["Name"] = "turning#100";
              t.world.refused = {"Scene.SimSolids"};
            },
            ""},
           {"a tool without a solid needs no turret",
            [](Theatre& t) {
              t.solids->items.clear();
              t.world.refused = {"Scene.SimTurrets"};
            },
            ""},
           {"no simulated tool needs no tools",
            [](Theatre& t) {
              t.sim_tools->items.clear();
              t.world.refused = {"Document.Tools"};
            },
            ""},
           {"a turret that the scene lacks",
            [](Theatre& t) {
              t.sim_turrets->items.erase(t.sim_turrets->items.begin(), t.sim_turrets->items.begin() + 2);
            },
            ""},
           {"a scene without turrets asks for no turret's name",
            [](Theatre& t) {
              t.sim_turrets->items.clear();
              t.world.refused = {"Upper.Name"};
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

// The event as plain walks, for solids that stand right already.
void walk_plainly(const host::Simulation& m_Sim) {
  const host::Scene scene = m_Sim.Scene();
  const auto tool_named = [](const std::string& name) {
    const host::Tools tools = global::Application().Document().Tools();
    for (std::int32_t i = 1, count = tools.Count(); i <= count; ++i) {
      if (tools.Item(i).Name() == name) return tools.Item(i);
    }
    return host::Tool();
  };
  for (std::int32_t t = 1, count = scene.SimTools().Count(); t <= count; ++t) {
    const std::string name = scene.SimTools().Item(t).Name();
    const host::Tool tool = tool_named(name);
    if (tool.is_nothing()) continue;
    for (std::int32_t s = 1, solids = scene.SimSolids().Count(); s <= solids; ++s) {
      if (scene.SimSolids().Item(s).Name() != tool_identity::model_file(name)) continue;
      const host::Turret turret =
          global::Application().Document().MachineSetup().Turrets().Item(tool.Turret());
      const host::Station station = turret.Stations().Item(tool.Station());
      host::Point origin;
      for (std::int32_t i = 1, turrets = scene.SimTurrets().Count(); i <= turrets; ++i) {
        if (scene.SimTurrets().Item(i).Name() != turret.Name()) continue;
        (void)station.RadialOffset();
        (void)station.AxialOffset();
        origin = scene.SimTurrets().Item(i).Origin();
      }
      if (origin.is_nothing()) continue;
      (void)station.TurretAngle();
      (void)station.TiltAngle();
      for (const char* position : {"LatheToolOrientation", "CustomSetting6"}) {
        (void)tool.ToolParameters().Item(position).Value();
      }
      (void)origin.X(), (void)origin.Y(), (void)origin.Z();
      global::Application().Document().Refresh();
    }
  }
}

TEST(TurnSolids, GoesTheWayOfPlainWalks) {
  worlds::compare([](unsigned seed, bool plainly) {
    worlds::Random random(seed);
    Theatre theatre;
    fakes::World& world = theatre.world;
    std::vector<std::string> refusable;
    theatre.solids->items.clear();
    theatre.stand(16, "16");
    for (int i = random.below(13); i > 0; --i) {
      const std::string number = std::to_string(i);
      const auto tool = theatre.add_tool("Tool" + number, worlds::tool_name(random));
      tool->named["LatheToolOrientation"]->members["Value"] = 16;
      tool->named["CustomSetting6"]->members["Value"] = "16";
      tool->members["Turret"] = 1 + random.below(2);
      if (!random.once_in(4)) theatre.sim_tools->add("S" + number)->members["Name"] = tool->members["Name"];
      for (int solids = random.below(3); solids > 0; --solids) {
        theatre.solids->add("Solid" + number)->members["Name"] =
            tool_identity::model_file(worlds::tool_name(random));
      }
      refusable.insert(refusable.end(), {"Tool" + number + ".Name", "Solid" + number + ".Name"});
    }
    worlds::refuse_some(random, world, refusable, random.of<int>({10, 1000, 1000}));
    const int quiet = random.of<int>({2, 5, 1000});
    const bool they_come = random.once_in(2);
    std::string log, solid_in_use;
    world.on_attempt = [&](const std::string& access) {
      if (access.starts_with("Solid") && access.ends_with(".Name")) {
        solid_in_use = access.substr(0, access.find('.'));
      }
      for (const char* part_of_a_walk :
           {".Name", ".Item", ".Count", ".Document", ".MajorVersion", "Scene.", ".Tools"}) {
        if (access.find(part_of_a_walk) != access.npos) return;
      }
      log += access + ' ';
      if (access == "Document.Refresh" && random.once_in(quiet)) {
        const bool of_solids = random.once_in(2);
        worlds::change(random, world, of_solids ? *theatre.solids : *theatre.tools, they_come, of_solids,
                       solid_in_use);
      }
    };
    const host::Simulation m_Sim{Ref(theatre.simulation)};
    try {
      plainly ? walk_plainly(m_Sim) : simulation::turn_solids(m_Sim);
    } catch (const automation::Failure& failure) {
      log += failure.what();
    }
    return log;
  });
}

}  // namespace
