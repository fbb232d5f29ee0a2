#include "knowledgebase/knowledge_base_access.h"

#include <vector>

#include "host/create.h"

namespace KBM {

// Capitals differ from table to table.
constexpr Rows cutting_tool_groups{
    {{{"select * from tblCuttingToolGroup where fldName_tblCuttingToolGroup='", "Name"}}},
    "fldpkNameIdentifierID_tblCuttingToolGroup",
    &host::KnowledgeBase::CuttingToolGroups};
constexpr Rows part_material_standards{
    {{{"select * from tblPartMaterialStandard where fldName_tblPartMaterialStandard='", "Name"}}},
    "fldNameIdentifierId_tblPartMaterialStandard",
    &host::KnowledgeBase::PartMaterialStandards};
constexpr Rows cutter_materials{
    {{{"select * from tblCutterMaterial where fldName_tblCutterMaterial='", "Name"}}},
    "fldpkNameIdentifierID_tblCutterMaterial",
    &host::KnowledgeBase::CutterMaterials};
constexpr Rows part_materials{{{{"select * from tblPartMaterial where fldName_tblPartMaterial='", "Name"},
                                {" and fldfkPartMaterialStandardId_tblPartMaterial='", "StandardId"}}},
                              "fldpkNameIdentifierId_tblPartMaterial",
                              &host::KnowledgeBase::PartMaterials};
constexpr Rows part_material_classes{
    {{{"select * from tblPartMaterialClass where fldName_tblPartMaterialClass='", "Name"},
      {" and fldStandard_tblPartMaterialClass='", "StandardId"}}},
    "fldpkNameIdentifierID_tblPartMaterialClass",
    &host::KnowledgeBase::PartMaterialClasses};
constexpr Rows part_material_conditions{
    {{{"select * from tblPartMaterialCondition where fldName_tblPartMaterialCondition='", "Name"}}},
    "fldpkNameIdentifierID_tblPartMaterialCondition",
    &host::KnowledgeBase::PartMaterialConditions};
constexpr Rows part_material_groups{
    {{{"select * from tblPartMaterialGroup where fldfkPartMaterialClassID_tblPartMaterialGroup='", "ClassId"},
      {" and fldfkPartMaterialConditionID_tblPartMaterialGroup='", "ConditionId"},
      {" and fldStandard_tblPartMaterialGroup='", "StandardId"}}},
    "fldpkID_tblPartMaterialGroup",
    &host::KnowledgeBase::PartMaterialGroups};
constexpr Rows kb_operations{{{{"select * from tblOperation where fldName_tblOperation='", "Name"}}},
                             "fldpkNameIdentifierID_tblOperation",
                             &host::KnowledgeBase::KbOperations};

std::string statement(std::span<const std::string> pieces) {
  std::string text;
  bool is_value = false;
  for (const std::string& piece : pieces) {
    if (is_value && piece.find('\'') != piece.npos) {
      throw automation::Failure("Syntax error in a statement for the knowledge base: apostrophe in \"" +
                                piece + "\"");
    }
    text += piece;
    is_value = !is_value;
  }
  return text;
}

std::string select_of(std::span<const Condition> conditions, const host::RecordRef& record) {
  std::vector<std::string> pieces;
  std::string_view end_of_value;
  for (const Condition& condition : conditions) {
    if (condition.text == nullptr) break;
    pieces.push_back(std::string(end_of_value) + condition.text);
    pieces.push_back(record->at(condition.member).to_text());
    end_of_value = "'";
  }
  pieces.emplace_back(end_of_value);
  return statement(pieces);
}

const host::KnowledgeBase& KnowledgeBaseAccess::knowledge_base() {
  if (knowledge_base_.is_nothing()) knowledge_base_ = host::new_knowledge_base();
  return knowledge_base_;
}

host::Recordset KnowledgeBaseAccess::execute(const std::string& text) {
  if (connection_.is_nothing()) connection_ = knowledge_base().Database().Connection();
  return connection_.Execute(text);
}

std::string KnowledgeBaseAccess::find_or_create(const Rows& rows, const host::RecordRef& record) {
  const host::Recordset found = execute(select_of(rows.conditions, record));
  if (found.at_eof()) {
    (knowledge_base().*rows.store)().Add(record);
  } else {
    record->at("Id") = found.Fields().Item(rows.id_column).Value().to_text();
  }
  return record->at("Id").to_text();
}

}  // namespace KBM
