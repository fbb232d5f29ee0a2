#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>

#include "foundation/kept_walk.h"
#include "host/document.h"
#include "host/machine.h"

namespace shapes {

/// An entry of a turret, by their numbers from 1; turret 0 where none was found.
struct FoundSolid {
  std::int32_t turret = 0;
  std::int32_t entry = 0;
  host::SolidModels solids;
  host::SolidModel model;
};

/// The active document's machine, as a command or an event sees it. What the host has told is kept, what it
/// refuses is asked again.
class MachineView {
 public:
  /// From here on document, type and turrets are asked again: an import does so for each line.
  void begin_line();
  /// Each throws Failure where the host refuses it.
  const host::Document& document();
  std::int32_t type();
  const host::Turrets& turrets();

  /// Further conditions for a solid entry of the name on that turret.
  using Condition = std::function<bool(std::int32_t turret, const host::SolidModel& model)>;

  /// Walks from the last turret and its last solid entry to the first, until an entry has that name, or a
  /// name that the host refuses, and meets the condition; an entry that can't be had ends its turret. What is
  /// kept between the walks tells KeptWalk. Throws nothing.
  FoundSolid find_solid(const std::string& name, const Condition& condition);
  /// A new entry at that turret's end. Throws Failure.
  host::SolidModel add_solid(std::int32_t turret);
  /// Takes the entry away. Throws Failure.
  void remove_solid(const FoundSolid& found);

 private:
  using Walk = KeptWalk<host::SolidModel, std::string>;

  host::Document document_;
  std::optional<std::int32_t> type_;
  host::Turrets turrets_;
  std::map<std::int32_t, Walk> solids_;  // by turret
};

}  // namespace shapes
