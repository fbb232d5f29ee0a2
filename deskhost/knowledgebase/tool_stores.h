#pragma once

#include <memory>

#include "deskhost/knowledgebase/base.h"
#include "deskhost/model/desk_object.h"

namespace deskhost {

/// KbTools: a tool by its id, and its places in groups. A KbToolRecord doesn't have the tool's id: `Add`
/// stores the tool that the same object's last `Find` was asked for.
std::shared_ptr<DeskObject> make_kb_tools(std::shared_ptr<Base> base);

/// KbToolParameters: all parameters of a tool as one array, which is stored as a whole or not at all.
std::shared_ptr<DeskObject> make_kb_tool_parameters(std::shared_ptr<Base> base);

}  // namespace deskhost
