#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "host/tool.h"
#include "shapes/machine_view.h"

/// The solid entries that show tools on the turrets of the active document's machine setup. The file's name
/// alone identifies a model; `machine` is the command's or the event's. On a machine without turrets both do
/// nothing; both skip failures.
namespace shapes {

/// Makes the entry of the model, or updates the one that is found, and puts it on that station of that
/// turret; station 0 takes it off. An entry found on another turret is removed where it stands on that
/// station number. A model whose file is gone is removed.
void AttachUserModel(const std::string& modelFile, std::int32_t station, std::int32_t turret,
                     MachineView& machine);

/// Removes the last entry of the model that stands on a station with that number; at most one goes. The
/// search covers all turrets whatever `turret` says. The station's number is looked up on the turret that the
/// entry is on: one whose station that turret doesn't have can't stay there, and goes.
void RemoveUserModel(const std::string& modelFile, std::int32_t station, std::int32_t turret,
                     MachineView& machine);

/// Attaches the tool's model where its file exists, else removes it. The model stands on the tool's station,
/// and on the tool's turret where none is given.
void show_user_model(const host::Tool& tool, const std::string& modelFile, MachineView& machine,
                     std::optional<std::int32_t> turret = {});

}  // namespace shapes
