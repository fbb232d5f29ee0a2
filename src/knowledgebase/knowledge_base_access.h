#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>

#include "host/knowledge_base.h"

namespace KBM {

/// Joins the pieces of a statement: text and value in turn, beginning with text. A value goes in as it is, so
/// one with an apostrophe would break the statement, or mean another one; it is refused before the database
/// sees it. Throws Failure.
std::string statement(std::span<const std::string> pieces);

/// A condition of a select: the text in front of its value, up to the apostrophe, and the record's member
/// that the value is taken from.
struct Condition {
  const char* text;
  const char* member;
};

/// How the rows are found that a record means, and how one is made of it.
struct Rows {
  std::array<Condition, 3> conditions;  ///< the first one begins the select; those behind the last are empty
  const char* id_column;
  host::Store (host::KnowledgeBase::*store)() const;
};

extern const Rows cutting_tool_groups;
extern const Rows part_material_standards;
extern const Rows cutter_materials;
extern const Rows part_materials;
extern const Rows part_material_classes;
extern const Rows part_material_conditions;
extern const Rows part_material_groups;
extern const Rows kb_operations;

/// The knowledge base of one procedure, made at first need.
class KnowledgeBaseAccess {
 public:
  const host::KnowledgeBase& knowledge_base();
  host::Recordset execute(const std::string& text);

  /// The first row that the record's members select gives its `Id`; without a row the store makes one from
  /// the record. The result is that `Id`.
  std::string find_or_create(const Rows& rows, const host::RecordRef& record);

 private:
  host::KnowledgeBase knowledge_base_;
  host::Connection connection_;
};

/// The select of the rows that meet the conditions with the record's members. Throws Failure.
std::string select_of(std::span<const Condition> conditions, const host::RecordRef& record);

}  // namespace KBM
