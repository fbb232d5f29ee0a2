#include "shapes/solid_entries.h"

#include "foundation/failures.h"

namespace shapes {

FoundSolid SolidEntries::find(const host::Turrets& turrets, const std::string& name,
                              const Condition& condition) {
  std::int32_t turret = 0;
  skip_failure([&] { turret = turrets.Count(); });
  for (; turret >= 1; --turret) {
    host::SolidModels solids;
    skip_failure([&] { solids = turrets.Item(turret).Solids(); });
    Walk& walk = walks_.try_emplace(turret, solids, Entries::by_number, Meets::first, Direction::backward)
                     .first->second;
    bool goes_on = false;
    skip_failure([&] { walk.begin(name, solids), goes_on = walk.next(); });
    while (goes_on) {
      host::SolidModel model;
      skip_failure([&] { model = walk.entry(); });
      if (model.is_nothing()) break;
      const bool has_name = passes([&] { return walk.meets(model.Name()); });
      if (has_name && condition(turret, model)) return {turret, walk.number(), solids, model};
      goes_on = false;
      skip_failure([&] { goes_on = walk.next(); });
    }
  }
  return {};
}

host::SolidModel SolidEntries::add(const host::Turrets& turrets, std::int32_t turret) {
  host::SolidModel model = turrets.Item(turret).Solids().Add();
  if (const auto walk = walks_.find(turret); walk != walks_.end()) walk->second.appended();
  return model;
}

void SolidEntries::remove(const FoundSolid& found) {
  found.solids.Remove(found.entry);
  walks_.at(found.turret).removed(found.entry);
}

}  // namespace shapes
