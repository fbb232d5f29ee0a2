#include "knowledgebase/material_tools.h"

#include <algorithm>

#include "foundation/global.h"

namespace KBM {
namespace {

void write(const host::ToolParameters& tool, const std::string& material_id) {
  tool.Item("ToolMaterial").Value(material_id);
  tool.Item("ToolMaterial").ValueMarked(true);
}

}  // namespace

void MaterialTools::walk(const std::string& material_name, const std::string& material_id) {
  const host::Tools tools = global::Application().Document().Tools();
  const std::int32_t count = tools.Count();
  for (std::int32_t number = 1; number <= count; ++number) {
    const host::ToolParameters tool = tools.Item(number).ToolParameters();
    const std::string tool_id = tool.Item("ToolID").Value().to_text();
    if (std::ranges::count(tool_id, '#') != 1) continue;
    const std::string material = tool_id.substr(tool_id.find('#') + 1);
    if (material == material_name) write(tool, material_id);
    by_material_[material].push_back(tool);
  }
  walked_ = true;
}

void MaterialTools::assign(const std::string& material_name, const std::string& material_id) {
  if (!walked_) return walk(material_name, material_id);
  const auto found = by_material_.find(material_name);
  if (found == by_material_.end()) return;
  for (const host::ToolParameters& tool : found->second) write(tool, material_id);
}

}  // namespace KBM
