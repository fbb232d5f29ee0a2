#include "shapes/user_models.h"

#include "foundation/failures.h"
#include "foundation/global.h"

namespace shapes {
namespace {

constexpr std::int32_t model_color = 186 + 256 * 205 + 65536 * 201;

bool has_no_turrets(MachineView& machine) {
  return passes([&] { return machine.type() != host::machine_with_turrets; });
}

host::SolidModel new_model(const std::string& modelFile, std::int32_t turret, MachineView& machine) {
  host::SolidModel model;
  skip_failure([&] { model = machine.add_solid(turret); });
  skip_failure([&] { model.Name(modelFile); });
  skip_failure([&] { model.Color(model_color); });
  skip_failure([&] { model.Shown(true); });
  return model;
}

}  // namespace

void AttachUserModel(const std::string& modelFile, std::int32_t station, std::int32_t turret,
                     MachineView& machine) {
  if (has_no_turrets(machine)) return;
  std::string path;
  skip_failure([&] { path = global::user_model_path(modelFile); });
  if (passes([&] { return !global::FileExists(path); }))
    return RemoveUserModel(modelFile, station, 1, machine);

  const FoundSolid found = machine.find_solid(modelFile, [](auto&&...) { return true; });
  const host::SolidModel model = found.turret == 0 ? new_model(modelFile, turret, machine) : found.model;
  skip_failure([&] { model.ModelPath(path); });
  // One on another turret goes; a later attach makes it on the right one.
  if (found.turret != 0 && found.turret != turret) RemoveUserModel(modelFile, station, 1, machine);

  host::Station place;
  skip_failure([&] { place = machine.turrets().Item(turret).Stations().Item(station); });
  skip_failure([&] { model.Station(place); });
  skip_failure([&] { model.Unmounted(station == 0); });
}

void RemoveUserModel(const std::string& modelFile, std::int32_t station, std::int32_t /*turret*/,
                     MachineView& machine) {
  if (has_no_turrets(machine)) return;
  const FoundSolid found =
      machine.find_solid(modelFile, [&](std::int32_t turret, const host::SolidModel& model) {
        return passes([&] {
          const std::int32_t number = model.Station().Number();
          return machine.turrets().Item(turret).Stations().Item(number).Number() == station;
        });
      });
  if (found.turret != 0) skip_failure([&] { machine.remove_solid(found); });
}

void show_user_model(const host::Tool& tool, const std::string& modelFile, MachineView& machine,
                     std::optional<std::int32_t> turret) {
  if (passes([&] { return global::FileExists(global::user_model_path(modelFile)); })) {
    skip_failure([&] {
      const std::int32_t station = tool.Station();
      AttachUserModel(modelFile, station, turret ? *turret : tool.Turret(), machine);
    });
  } else {
    skip_failure([&] {
      const std::int32_t station = tool.Station();
      RemoveUserModel(modelFile, station, tool.Turret(), machine);
    });
  }
}

}  // namespace shapes
