#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "host/knowledge_base.h"

namespace KBM {

/// Joins the pieces of a statement: text and value in turn, beginning with text. A value goes in as it is, so
/// one with an apostrophe would break the statement, or mean another one; it is refused before the database
/// sees it. Throws Failure.
std::string statement(std::initializer_list<std::string_view> pieces);

/// Where rows of one kind are found by name, and made.
struct NamedRows {
  const char* select;  ///< up to the apostrophe in front of the name
  const char* id_column;
  host::Store (host::KnowledgeBase::*store)() const;
};
extern const NamedRows cutting_tool_groups;
extern const NamedRows part_material_standards;
extern const NamedRows cutter_materials;
extern const NamedRows part_materials;
extern const NamedRows part_material_classes;
extern const NamedRows part_material_conditions;
extern const NamedRows kb_operations;

/// The knowledge base of one procedure, made at first need.
class KnowledgeBaseAccess {
 public:
  const host::KnowledgeBase& knowledge_base();
  host::Recordset execute(const std::string& text);

  /// The first row that the select finds gives the record's `Id`; without a row the store makes one from the
  /// record. The result is that `Id`.
  std::string find_or_create(const std::string& select, const char* id_column,
                             host::Store (host::KnowledgeBase::*store)() const,
                             const host::RecordRef& record);
  /// The same by the record's `Name` alone.
  std::string find_or_create(const NamedRows& rows, const host::RecordRef& record);

 private:
  host::KnowledgeBase knowledge_base_;
  host::Connection connection_;
};

}  // namespace KBM
