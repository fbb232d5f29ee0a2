#pragma once

#include "deskhost/model/desk_object.h"

namespace deskhost {

/// The tools' shapes, made by the add-in. Members: Attach(application or nothing), ExePath, UserModelsPath,
/// ShapeColor, ShapeMode, ShapeFlag, ShapeCache, RefreshToolShape(tool, 0), RefreshToolShapes(tools, 0),
/// RestoreToolShapes(tools, 0); the last three give the number of tools that were dealt with. The desk host
/// draws nothing: it checks what it is given.
std::shared_ptr<DeskObject> make_shape_manager();

}  // namespace deskhost
