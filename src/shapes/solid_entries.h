#pragma once

#include <functional>
#include <map>
#include <string>

#include "foundation/kept_walk.h"
#include "host/machine.h"

namespace shapes {

/// An entry of a turret, by their numbers from 1; turret 0 where none was found.
struct FoundSolid {
  std::int32_t turret = 0;
  std::int32_t entry = 0;
  host::SolidModels solids;
  host::SolidModel model;
};

/// The solid entries of a document's turrets, for as many searches as a command has for them; see KeptWalk
/// for what is kept in between.
class SolidEntries {
 public:
  /// Further conditions for an entry of the name on that turret.
  using Condition = std::function<bool(std::int32_t turret, const host::SolidModel& model)>;

  /// Walks from the last turret and its last entry to the first, until an entry has that name, or a name that
  /// the host refuses, and meets the condition; an entry that can't be had ends its turret. Throws nothing.
  FoundSolid find(const host::Turrets& turrets, const std::string& name, const Condition& condition);
  /// A new entry at that turret's end. Throws Failure.
  host::SolidModel add(const host::Turrets& turrets, std::int32_t turret);
  /// Takes the entry away. Throws Failure.
  void remove(const FoundSolid& found);

 private:
  using Walk = KeptWalk<host::SolidModel, std::string>;
  std::map<std::int32_t, Walk> walks_;  // by turret
};

}  // namespace shapes
