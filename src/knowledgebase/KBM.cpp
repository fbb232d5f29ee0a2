#include "knowledgebase/KBM.h"

#include <algorithm>
#include <memory>

#include "foundation/failures.h"
#include "host/knowledge_base_records.h"
#include "knowledgebase/knowledge_base_access.h"

namespace KBM {
namespace {

using automation::Value;

std::string text_of_parameter(const Value& value) {
  std::string text = value.to_text();
  // The stored number has a point whatever the locale writes.
  if (value.is(Value::Kind::R8)) std::ranges::replace(text, ',', '.');
  return text;
}

/// One record for each parameter, from index 0. What can't be read leaves what the parameter before had.
automation::Array read_parameters(const host::ToolParameters& tool, const Value& tool_record_id) {
  automation::Array parameters;
  const host::RecordRef current = host::make_record(host::KbToolParameterRecord);
  current->at("ToolRecordId") = tool_record_id;
  Value& code = current->at("Code");
  Value& text = current->at("Value");
  std::int32_t count = 0;
  skip_failure([&] { count = tool.Count(); });
  for (std::int32_t number = 1; number <= count; ++number) {
    host::ToolParameter parameter;
    skip_failure([&] { parameter = tool.Item(number); });
    skip_failure([&] { code = parameter.Code(); });
    skip_failure([&] { text = text_of_parameter(parameter.Value()); });
    parameters.emplace_back(std::make_shared<automation::Record>(*current));
  }
  return parameters;
}

}  // namespace

std::string GetCutterMaterialId(const std::string& name) {
  KnowledgeBaseAccess access;
  const host::RecordRef standard = host::make_record(host::StandardRecord);
  standard->at("Name") = "Quorvex CC";
  const std::string standard_id = access.find_or_create(part_material_standards, standard);

  const host::RecordRef material = host::make_record(host::NamedRecord);
  material->at("Name") = name;
  material->at("StandardId") = standard_id;
  return access.find_or_create(cutter_materials, material);
}

void StoreToolInKnowledgeBase(const host::ToolParameters& tool, const std::string& tool_group) {
  KnowledgeBaseAccess access;
  const host::RecordRef group = host::make_record(host::ToolGroupRecord);
  group->at("Name") = "Quorvex - " + tool_group;
  group->at("ParentName") = "Quorvex - Tools";
  const std::string group_id = access.find_or_create(cutting_tool_groups, group);

  const host::KnowledgeBase& knowledge_base = access.knowledge_base();
  const std::string tool_id = tool.Item("ToolId").Value().to_text();
  const host::KbTools tools = knowledge_base.KbTools();
  const host::RecordRef stored = tools.Find(tool_id);
  stored->at("Kind") = tool.Kind();
  if (stored->at("Id").to_text().empty() && !tools.Add(stored)) return;

  const automation::Array parameters = read_parameters(tool, stored->at("Id"));
  host::KbToolParameters rows;
  skip_failure([&] { rows = knowledge_base.KbToolParameters(); });
  if (passes([&] { return rows.Find(tool_id) == tool_id; })) {
    skip_failure([&] { rows.Update(parameters); });
  } else {
    skip_failure([&] { rows.Add(parameters); });
  }
  skip_failure([&] { tools.Link(stored, group_id); });
}

}  // namespace KBM
