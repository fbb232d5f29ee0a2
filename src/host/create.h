#pragma once

#include "host/knowledge_base.h"
#include "host/shape_manager.h"

/// The host's classes that the add-in makes objects of, by the names that section [Host] of QVEsprit.cfg
/// gives them, or else by those that hosts give them. Each call makes one and throws Failure where the host
/// doesn't have the class.
namespace host {

ToolFactory new_tool_factory();
ShapeManager new_shape_manager();
Point new_point();
Vector new_vector();
KnowledgeBase new_knowledge_base();

}  // namespace host
