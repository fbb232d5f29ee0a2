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

/// An entry of a turret, by their numbers.
struct Found {
  std::int32_t turret = 0;
  std::int32_t entry = 0;
  host::SolidModels solids;
  host::SolidModel model;
};

template <class Entries>
std::int32_t count_of(const Entries& entries) {
  std::int32_t count = 0;
  skip_failure([&] { count = entries.Count(); });
  return count;
}

/// Walks from the last turret and its last entry to the first, until `ends_with` holds for a turret and its
/// entry; an entry that can't be had ends its turret. Gives that entry, or one on turret 0.
template <class EndsWith>
Found find_entry(const host::Turrets& turrets, EndsWith&& ends_with) {
  for (std::int32_t turret = count_of(turrets); turret >= 1; --turret) {
    host::SolidModels solids;
    skip_failure([&] { solids = turrets.Item(turret).Solids(); });
    for (std::int32_t entry = count_of(solids); entry >= 1; --entry) {
      host::SolidModel model;
      skip_failure([&] { model = solids.Item(entry); });
      if (model.is_nothing()) break;
      if (ends_with(turret, model)) return {turret, entry, solids, model};
    }
  }
  return {};
}

bool machine_has_no_turrets() {
  return passes([] { return global::Application().Document().MachineType() != host::machine_with_turrets; });
}

host::SolidModel new_model(const std::string& modelFile, std::int32_t turret, const host::Turrets& turrets) {
  host::SolidModel model;
  skip_failure([&] { model = turrets.Item(turret).Solids().Add(); });
  skip_failure([&] { model.Name(modelFile); });
  skip_failure([&] { model.Color(model_color); });
  skip_failure([&] { model.Shown(true); });
  return model;
}

}  // namespace

void AttachUserModel(const std::string& modelFile, std::int32_t station, std::int32_t turret) {
  if (machine_has_no_turrets()) return;
  std::string path;
  skip_failure([&] { path = global::user_model_path(modelFile); });
  if (passes([&] { return !global::FileExists(path); })) return RemoveUserModel(modelFile, station, 1);

  const host::Turrets turrets = turrets_of_document();
  const Found found = find_entry(turrets, [&](std::int32_t /*turret*/, const host::SolidModel& model) {
    return passes([&] { return model.Name() == modelFile; });
  });
  const host::SolidModel model = found.turret == 0 ? new_model(modelFile, turret, turrets) : found.model;
  skip_failure([&] { model.ModelPath(path); });
  // One on another turret goes; a later attach makes it on the right one.
  if (found.turret != 0 && found.turret != turret) RemoveUserModel(modelFile, station, 1);

  host::Station place;
  skip_failure([&] { place = turrets.Item(turret).Stations().Item(station); });
  skip_failure([&] { model.Station(place); });
  skip_failure([&] { model.Unmounted(station == 0); });
}

void RemoveUserModel(const std::string& modelFile, std::int32_t station, std::int32_t /*turret*/) {
  if (machine_has_no_turrets()) return;
  const host::Turrets turrets = turrets_of_document();
  const auto stands_there = [&](std::int32_t turret, const host::SolidModel& model) {
    return passes([&] { return model.Name() == modelFile; }) && passes([&] {
             const std::int32_t number = model.Station().Number();
             return turrets.Item(turret).Stations().Item(number).Number() == station;
           });
  };
  const Found found = find_entry(turrets, stands_there);
  if (found.turret != 0) skip_failure([&] { found.solids.Remove(found.entry); });
}

void show_user_model(const host::Tool& tool, const std::string& modelFile,
                     std::optional<std::int32_t> turret) {
  if (passes([&] { return global::FileExists(global::user_model_path(modelFile)); })) {
    skip_failure([&] {
      const std::int32_t station = tool.Station();
      AttachUserModel(modelFile, station, turret ? *turret : tool.Turret());
    });
  } else {
    skip_failure([&] {
      const std::int32_t station = tool.Station();
      RemoveUserModel(modelFile, station, tool.Turret());
    });
  }
}

}  // namespace shapes
