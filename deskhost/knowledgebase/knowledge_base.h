#pragma once

#include <functional>
#include <memory>

#include "deskhost/knowledgebase/base.h"
#include "deskhost/model/desk_object.h"

namespace deskhost {

/// A KnowledgeBase object on an open base. A base whose connection was lost is connected anew; throws Failure
/// where that fails.
std::shared_ptr<DeskObject> make_knowledge_base(std::shared_ptr<Base> base);

/// Makes KnowledgeBase objects on one base. With an empty source that is a temporary one, made with the first
/// object. Otherwise the base is opened at once; throws Failure where it can't be.
std::function<automation::Ref()> knowledge_base_maker(const std::string& source);

}  // namespace deskhost
