#include "shapes/user_models.h"

#include "foundation/failures.h"
#include "foundation/global.h"

namespace shapes {
namespace {

constexpr std::int32_t model_color = 186 + 256 * 205 + 65536 * 201;

host::Turrets turrets_of_document() {
  host::Turrets turrets;
  skip_failure([&] { turrets = global::Application().Document().MachineSetup().Turrets(); });
  return turrets;
}

bool machine_has_no_turrets() {
  return passes([] { return global::Application().Document().MachineType() != host::machine_with_turrets; });
}

host::SolidModel new_model(const std::string& modelFile, std::int32_t turret, const host::Turrets& turrets,
                           SolidEntries& entries) {
  host::SolidModel model;
  skip_failure([&] { model = entries.add(turrets, turret); });
  skip_failure([&] { model.Name(modelFile); });
  skip_failure([&] { model.Color(model_color); });
  skip_failure([&] { model.Shown(true); });
  return model;
}

}  // namespace

void AttachUserModel(const std::string& modelFile, std::int32_t station, std::int32_t turret,
                     SolidEntries& entries) {
  if (machine_has_no_turrets()) return;
  std::string path;
  skip_failure([&] { path = global::user_model_path(modelFile); });
  if (passes([&] { return !global::FileExists(path); }))
    return RemoveUserModel(modelFile, station, 1, entries);

  const host::Turrets turrets = turrets_of_document();
  const FoundSolid found = entries.find(turrets, modelFile, [](auto&&...) { return true; });
  const host::SolidModel model =
      found.turret == 0 ? new_model(modelFile, turret, turrets, entries) : found.model;
  skip_failure([&] { model.ModelPath(path); });
  // One on another turret goes; a later attach makes it on the right one.
  if (found.turret != 0 && found.turret != turret) RemoveUserModel(modelFile, station, 1, entries);

  host::Station place;
  skip_failure([&] { place = turrets.Item(turret).Stations().Item(station); });
  skip_failure([&] { model.Station(place); });
  skip_failure([&] { model.Unmounted(station == 0); });
}

void RemoveUserModel(const std::string& modelFile, std::int32_t station, std::int32_t /*turret*/,
                     SolidEntries& entries) {
  if (machine_has_no_turrets()) return;
  const host::Turrets turrets = turrets_of_document();
  const FoundSolid found =
      entries.find(turrets, modelFile, [&](std::int32_t turret, const host::SolidModel& model) {
        return passes([&] {
          const std::int32_t number = model.Station().Number();
          return turrets.Item(turret).Stations().Item(number).Number() == station;
        });
      });
  if (found.turret != 0) skip_failure([&] { entries.remove(found); });
}

void show_user_model(const host::Tool& tool, const std::string& modelFile, SolidEntries& entries,
                     std::optional<std::int32_t> turret) {
  if (passes([&] { return global::FileExists(global::user_model_path(modelFile)); })) {
    skip_failure([&] {
      const std::int32_t station = tool.Station();
      AttachUserModel(modelFile, station, turret ? *turret : tool.Turret(), entries);
    });
  } else {
    skip_failure([&] {
      const std::int32_t station = tool.Station();
      RemoveUserModel(modelFile, station, tool.Turret(), entries);
    });
  }
}

}  // namespace shapes
