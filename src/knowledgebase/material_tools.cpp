#include "knowledgebase/material_tools.h"

#include "formats/tool_identity.h"
#include "foundation/global.h"

namespace KBM {
namespace {

// "#" and the material; a ToolID that names none has a key that no material has.
std::string key_of_tool(const std::string& tool_id) {
  const auto material = tool_identity::second_of_two(tool_id);
  return material ? "#" + std::string(*material) : std::string();
}

}  // namespace

void MaterialTools::assign(const std::string& material_name, const std::string& material_id) {
  const host::Tools tools = global::Application().Document().Tools();
  if (!tools_) tools_.emplace(tools, Entries::by_number, Meets::every);
  tools_->begin("#" + material_name, tools);
  while (tools_->next()) {
    const host::ToolParameters tool = tools_->entry().ToolParameters();
    if (!tools_->meets(key_of_tool(tool.Item("ToolID").Value().to_text()))) continue;
    tool.Item("ToolMaterial").Value(material_id);
    tool.Item("ToolMaterial").ValueMarked(true);
  }
}

}  // namespace KBM
