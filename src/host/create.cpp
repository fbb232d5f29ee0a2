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

void ShapeManager::RefreshToolShape(Tool& tool) const {
  std::array<automation::Value, 2> args{automation::Value(tool.ref()), automation::Value(0)};
  if (is_nothing()) throw automation::Failure(automation::Error::object_not_set);
  ref()->call("RefreshToolShape", args);
  tool = Tool(args[0].to_object());
}

}  // namespace host
