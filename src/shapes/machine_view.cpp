#include "shapes/machine_view.h"

#include "foundation/failures.h"
#include "foundation/global.h"

namespace shapes {

void MachineView::begin_line() {
  document_.release();
  type_.reset();
  turrets_.release();
}

const host::Document& MachineView::document() {
  if (document_.is_nothing()) document_ = global::Application().Document();
  return document_;
}

std::int32_t MachineView::type() {
  if (!type_) type_ = document().MachineType();
  return *type_;
}

const host::Turrets& MachineView::turrets() {
  if (turrets_.is_nothing()) turrets_ = document().MachineSetup().Turrets();
  return turrets_;
}

FoundSolid MachineView::find_solid(const std::string& name, const Condition& condition) {
  std::int32_t turret = 0;
  skip_failure([&] { turret = turrets().Count(); });
  for (; turret >= 1; --turret) {
    host::SolidModels solids;
    skip_failure([&] { solids = turrets().Item(turret).Solids(); });
    Walk& walk = solids_.try_emplace(turret, solids, Entries::by_number, Meets::first, Direction::backward)
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

host::SolidModel MachineView::add_solid(std::int32_t turret) {
  host::SolidModel model = turrets().Item(turret).Solids().Add();
  if (const auto walk = solids_.find(turret); walk != solids_.end()) walk->second.appended();
  return model;
}

void MachineView::remove_solid(const FoundSolid& found) {
  found.solids.Remove(found.entry);
  solids_.at(found.turret).removed(found.entry);
}

}  // namespace shapes
