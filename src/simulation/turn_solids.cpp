#include "simulation/turn_solids.h"

#include <cmath>
#include <numbers>
#include <optional>
#include <string>
#include <vector>

#include "foundation/global.h"
#include "foundation/tool_identity.h"
#include "host/create.h"
#include "simulation/step_table.h"

namespace simulation {
namespace {

using std::numbers::pi;

/// A collection that is searched by name, once for every simulated tool: each entry is fetched and its name
/// read when a search first reaches it, so that a search fails where the walk over the host's entries would.
template <class Entry>
class Named {
 public:
  explicit Named(host::Collection<Entry> entries) : entries_(std::move(entries)) {}

  /// Gives `visit` the entries of that name in their order, until it returns false.
  template <class Visit>
  void each(const std::string& name, Visit&& visit) {
    for (std::size_t index = 0; reach(index); ++index) {
      if (read_[index].name == name && !visit(read_[index].entry)) return;
    }
  }

 private:
  struct Item {
    Entry entry;
    std::string name;
  };

  bool reach(std::size_t index) {
    if (index < read_.size()) return true;
    if (!count_) count_ = static_cast<std::size_t>(entries_.Count());
    if (index >= *count_) return false;
    const Entry entry = entries_.Item(static_cast<std::int32_t>(index + 1));
    read_.push_back({entry, entry.Name()});
    return true;
  }

  host::Collection<Entry> entries_;
  std::optional<std::size_t> count_;
  std::vector<Item> read_;
};

/// The one point and the one vector of a run, made when the first solid turns.
class Turning {
 public:
  void perform(Steps steps, const host::SimSolid& solid, const std::array<double, 3>& centre,
               double turret_angle) {
    const std::array<double, 3> across{std::sin(turret_angle), std::cos(turret_angle), 0};
    constexpr std::array<double, 3> upright{0, 0, 1};
    if ((steps & A) != 0) {
      set_centre(centre);
      rotate(solid, across, pi / 2);
    }
    if ((steps & B) != 0) {
      set_centre(centre);
      rotate(solid, across, pi);
      rotate(solid, upright, pi);
    }
    if ((steps & C) != 0) {
      set_centre(centre);
      rotate(solid, upright, pi);
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
  explicit Run(const host::Scene& scene)
      : tools_(global::Application().Document().Tools()),
        solids_(scene.SimSolids()),
        turrets_(scene.SimTurrets()) {}

  void turn_solids_of(const std::string& tool_name);

 private:
  void turn(const host::SimSolid& solid, const host::Tool& tool);

  Named<host::Tool> tools_;
  Named<host::SimSolid> solids_;
  Named<host::SimTurret> turrets_;
  Turning turning_;
};

void Run::turn_solids_of(const std::string& tool_name) {
  host::Tool tool;
  tools_.each(tool_name, [&](const host::Tool& found) {
    tool = found;
    return false;
  });
  if (tool.is_nothing()) return;
  solids_.each(tool_identity::model_file(tool_name), [&](const host::SimSolid& solid) {
    turn(solid, tool);
    return true;
  });
}

void Run::turn(const host::SimSolid& solid, const host::Tool& tool) {
  const host::Turret turret = global::Application().Document().MachineSetup().Turrets().Item(tool.Turret());
  const host::Station station = turret.Stations().Item(tool.Station());
  host::SimTurret sim_turret;
  turrets_.each(turret.Name(), [&](const host::SimTurret& found) {
    sim_turret = found;
    return true;  // the last one counts
  });
  if (sim_turret.is_nothing()) return;

  const double r = station.RadialOffset();
  const double h = station.AxialOffset();
  const host::Point origin = sim_turret.Origin();
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
