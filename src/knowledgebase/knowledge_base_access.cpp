#include "knowledgebase/find_or_create.h"

#include "host/create.h"

namespace KBM {

// Capitals differ from table to table.
constexpr NamedRows cutting_tool_groups{
    "select * from tblCuttingToolGroup where fldName_tblCuttingToolGroup='",
    "fldpkNameIdentifierID_tblCuttingToolGroup", &host::KnowledgeBase::CuttingToolGroups};
constexpr NamedRows part_material_standards{
    "select * from tblPartMaterialStandard where fldName_tblPartMaterialStandard='",
    "fldNameIdentifierId_tblPartMaterialStandard", &host::KnowledgeBase::PartMaterialStandards};
constexpr NamedRows cutter_materials{"select * from tblCutterMaterial where fldName_tblCutterMaterial='",
                                     "fldpkNameIdentifierID_tblCutterMaterial",
                                     &host::KnowledgeBase::CutterMaterials};
constexpr NamedRows part_materials{"select * from tblPartMaterial where fldName_tblPartMaterial='",
                                   "fldpkNameIdentifierId_tblPartMaterial",
                                   &host::KnowledgeBase::PartMaterials};
constexpr NamedRows part_material_classes{
    "select * from tblPartMaterialClass where fldName_tblPartMaterialClass='",
    "fldpkNameIdentifierID_tblPartMaterialClass", &host::KnowledgeBase::PartMaterialClasses};
constexpr NamedRows part_material_conditions{
    "select * from tblPartMaterialCondition where fldName_tblPartMaterialCondition='",
    "fldpkNameIdentifierID_tblPartMaterialCondition", &host::KnowledgeBase::PartMaterialConditions};
constexpr NamedRows kb_operations{"select * from tblOperation where fldName_tblOperation='",
                                  "fldpkNameIdentifierID_tblOperation", &host::KnowledgeBase::KbOperations};

std::string statement(std::initializer_list<std::string_view> pieces) {
  std::string text;
  bool is_value = false;
  for (const std::string_view piece : pieces) {
    if (is_value && piece.find('\'') != piece.npos) {
      throw automation::Failure("Syntax error in a statement for the knowledge base: apostrophe in \"" +
                                std::string(piece) + "\"");
    }
    text += piece;
    is_value = !is_value;
  }
  return text;
}

const host::KnowledgeBase& KnowledgeBaseAccess::knowledge_base() {
  if (knowledge_base_.is_nothing()) knowledge_base_ = host::new_knowledge_base();
  return knowledge_base_;
}

host::Recordset KnowledgeBaseAccess::execute(const std::string& text) {
  if (connection_.is_nothing()) connection_ = knowledge_base().Database().Connection();
  return connection_.Execute(text);
}

std::string KnowledgeBaseAccess::find_or_create(const std::string& select, const char* id_column,
                                                host::Store (host::KnowledgeBase::*store)() const,
                                                const host::RecordRef& record) {
  const host::Recordset found = execute(select);
  if (found.at_eof()) {
    (knowledge_base().*store)().Add(record);
  } else {
    record->at("Id") = found.Fields().Item(id_column).Value().to_text();
  }
  return record->at("Id").to_text();
}

std::string KnowledgeBaseAccess::find_or_create(const NamedRows& rows, const host::RecordRef& record) {
  const std::string name = record->at("Name").to_text();
  return find_or_create(statement({rows.select, name, "'"}), rows.id_column, rows.store, record);
}

}  // namespace KBM
