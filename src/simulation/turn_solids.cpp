#include "simulation/turn_solids.h"

#include <cmath>
#include <optional>
#include <string>

#include "formats/tool_identity.h"
#include "foundation/global.h"
#include "foundation/kept_walk.h"
#include "host/create.h"
#include "simulation/step_table.h"

namespace simulation {
namespace {

/// The one point and the one vector of a run, made when the first solid turns.
class Turning {
 public:
  void perform(Steps steps, const host::SimSolid& solid, const std::array<double, 3>& centre,
               double turret_angle) {
    const std::array<double, 3> across{std::sin(turret_angle), std::cos(turret_angle), 0};
    constexpr std::array<double, 3> upright{0, 0, 1};
    if ((steps & A) != 0) {
      set_centre(centre);
      rotate(solid, across, global::PI() / 2);
    }
    if ((steps & B) != 0) {
      set_centre(centre);
      rotate(solid, across, global::PI());
      rotate(solid, upright, global::PI());
    }
    if ((steps & C) != 0) {
      set_centre(centre);
      rotate(solid, upright, global::PI());
    }
  }

 private:
  void set_centre(const std::array<double, 3>& centre) {
    if (point_.is_nothing()) point_ = host::new_point();
    point_.SetXYZ(centre[0], centre[1], centre[2]);
  }
  void rotate(const host::SimSolid& solid, const std::array<double, 3>& direction, double angle) {
    if (vector_.is_nothing()) vector_ = host::new_vector();
    vector_.SetXYZ(direction[0], direction[1], direction[2]);
    solid.Rotate(point_, vector_, angle);
  }

  host::Point point_;
  host::Vector vector_;
};

class Run {
 public:
  explicit Run(const host::Scene& scene) : scene_(scene) {}

  void turn_solids_of(const std::string& tool_name);

 private:
  /// A view of nothing where no tool has that name.
  host::Tool tool_named(const std::string& name);
  void turn(const host::SimSolid& solid, const host::Tool& tool);

  host::Scene scene_;
  // Each is taken from the host when it is first needed.
  std::optional<KeptWalk<host::Tool, std::string>> tools_;
  std::optional<KeptWalk<host::SimSolid, std::string>> solids_;
  std::optional<KeptWalk<host::SimTurret, std::string>> turrets_;
  Turning turning_;
};

host::Tool Run::tool_named(const std::string& name) {
  const host::Tools tools = global::Application().Document().Tools();
  if (!tools_) tools_.emplace(tools, Entries::by_number, Meets::first);
  tools_->begin(name, tools);
  while (tools_->next()) {
    host::Tool tool = tools_->entry();
    if (tools_->meets(tool.Name())) return tool;
  }
  return {};
}

void Run::turn_solids_of(const std::string& tool_name) {
  const host::Tool tool = tool_named(tool_name);
  if (tool.is_nothing()) return;
  if (!solids_) solids_.emplace(scene_.SimSolids(), Entries::by_number, Meets::every);
  solids_->begin(tool_identity::model_file(tool_name));
  while (solids_->next()) {
    const host::SimSolid solid = solids_->entry();
    if (solids_->meets(solid.Name())) turn(solid, tool);
  }
}

void Run::turn(const host::SimSolid& solid, const host::Tool& tool) {
  const host::Turret turret = global::Application().Document().MachineSetup().Turrets().Item(tool.Turret());
  const host::Station station = turret.Stations().Item(tool.Station());
  double r = 0;
  double h = 0;
  host::Point origin;
  if (!turrets_) turrets_.emplace(scene_.SimTurrets(), Entries::by_number, Meets::every);
  turrets_->begin({});
  if (turrets_->is_empty()) return;  // nothing is asked for a name to compare
  turrets_->begin_again(turret.Name());
  while (turrets_->next()) {  // the last one counts
    const host::SimTurret sim_turret = turrets_->entry();
    if (!turrets_->meets(sim_turret.Name())) continue;
    r = station.RadialOffset();
    h = station.AxialOffset();
    origin = sim_turret.Origin();
  }
  if (origin.is_nothing()) return;

  const double a = station.TurretAngle();
  const double b = station.TiltAngle();
  const std::int32_t position = tool.ToolParameters().Item("LatheToolOrientation").Value().to_int32();
  const std::int32_t database_position = tool.ToolParameters().Item("CustomSetting6").Value().to_int32();
  const std::array<double, 3> centre{origin.X() + r * std::cos(a),
                                     origin.Y() - r * std::sin(a) + h * std::sin(b),
                                     origin.Z() + h * std::cos(b)};
  turning_.perform(steps_for(position, database_position), solid, centre, a);
  global::Application().Document().Refresh();
}

}  // namespace

void turn_solids(const host::Simulation& m_Sim) {
  constexpr std::int32_t first_version_with_scene = 16;
  if (global::Application().MajorVersion() < first_version_with_scene) return;
  const host::Scene scene = m_Sim.Scene();
  const host::Collection<host::SimTool> sim_tools = scene.SimTools();
  const std::int32_t count = sim_tools.Count();
  if (count == 0) return;
  Run run(scene);
  for (std::int32_t index = 1; index <= count; ++index) run.turn_solids_of(sim_tools.Item(index).Name());
}

}  // namespace simulation
