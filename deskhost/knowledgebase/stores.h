#pragma once

#include <memory>
#include <string_view>

#include "deskhost/knowledgebase/base.h"
#include "deskhost/model/desk_object.h"

namespace deskhost {

/// A store of that name ("CuttingToolGroups", "KbTools", …), or null for a name that no store has. A store
/// call is one transaction.
std::shared_ptr<DeskObject> make_store(std::shared_ptr<Base> base, automation::Member name);

}  // namespace deskhost
