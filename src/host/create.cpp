#include "host/create.h"

#include "platform/component_runtime.h"

namespace host {

ToolFactory new_tool_factory() {
  return ToolFactory(platform::create_object("EspritTools.ToolFactory"));
}
ShapeManager new_shape_manager() {
  return ShapeManager(platform::create_object("EspritTools.ShapeManager"));
}
Point new_point() {
  return Point(platform::create_object("Esprit.Point"));
}
Vector new_vector() {
  return Vector(platform::create_object("Esprit.Vector"));
}
KnowledgeBase new_knowledge_base() {
  return KnowledgeBase(platform::create_object("EspritKnowledgeBase.KnowledgeBase"));
}

}  // namespace host
