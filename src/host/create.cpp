#include "host/create.h"

#include "platform/component_runtime.h"
#include "platform/profile.h"

namespace host {
namespace {

/// Where a host calls a class otherwise, the site's settings say so, under the class's name.
struct Class {
  const char* setting;
  const char* name;
};
constexpr Class tool_factory{"ToolFactory", "EspritTools.ToolFactory"};
constexpr Class shape_manager{"ShapeManager", "EspritTools.ShapeManager"};
constexpr Class point{"Point", "Esprit.Point"};
constexpr Class vector{"Vector", "Esprit.Vector"};
constexpr Class knowledge_base{"KnowledgeBase", "EspritKnowledgeBase.KnowledgeBase"};

automation::Ref make(const Class& wanted) {
  constexpr std::size_t room = 255;
  const std::string file = platform::component_folder() + "\\QVEsprit.cfg";
  const std::string given = platform::private_profile_string("Host", wanted.setting, "", room, file);
  return platform::create_object(given.empty() ? wanted.name : given);
}

}  // namespace

ToolFactory new_tool_factory() {
  return ToolFactory(make(tool_factory));
}
ShapeManager new_shape_manager() {
  return ShapeManager(make(shape_manager));
}
Point new_point() {
  return Point(make(point));
}
Vector new_vector() {
  return Vector(make(vector));
}
KnowledgeBase new_knowledge_base() {
  return KnowledgeBase(make(knowledge_base));
}

}  // namespace host
