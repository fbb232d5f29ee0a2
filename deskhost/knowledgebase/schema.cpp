#include "deskhost/knowledgebase/schema.h"

#include <array>
#include <functional>

namespace deskhost {
namespace {

using enum ColumnKind;

// Capitals differ from table to table: the add-in's selects have them so.
constexpr std::array cutting_tool_group_columns{
    Column{"fldpkNameIdentifierID_tblCuttingToolGroup", id, "Id"},
    Column{"fldName_tblCuttingToolGroup", key, "Name"},
    Column{"fldParentName_tblCuttingToolGroup", text, "ParentName"},
};
constexpr std::array part_material_standard_columns{
    Column{"fldNameIdentifierId_tblPartMaterialStandard", id, "Id"},
    Column{"fldName_tblPartMaterialStandard", key, "Name"},
};
constexpr std::array cutter_material_columns{
    Column{"fldpkNameIdentifierID_tblCutterMaterial", id, "Id"},
    Column{"fldName_tblCutterMaterial", key, "Name"},
    Column{"fldStandard_tblCutterMaterial", key, "StandardId"},
};
constexpr std::array part_material_columns{
    Column{"fldpkNameIdentifierId_tblPartMaterial", id, "Id"},
    Column{"fldName_tblPartMaterial", key, "Name"},
    Column{"fldfkPartMaterialStandardId_tblPartMaterial", key, "StandardId"},
};
constexpr std::array part_material_class_columns{
    Column{"fldpkNameIdentifierID_tblPartMaterialClass", id, "Id"},
    Column{"fldName_tblPartMaterialClass", key, "Name"},
    Column{"fldStandard_tblPartMaterialClass", key, "StandardId"},
};
constexpr std::array part_material_condition_columns{
    Column{"fldpkNameIdentifierID_tblPartMaterialCondition", id, "Id"},
    Column{"fldName_tblPartMaterialCondition", key, "Name"},
    Column{"fldStandard_tblPartMaterialCondition", key, "StandardId"},
};
constexpr std::array part_material_group_columns{
    Column{"fldpkID_tblPartMaterialGroup", id, "Id"},
    Column{"fldfkPartMaterialClassID_tblPartMaterialGroup", key, "ClassId"},
    Column{"fldfkPartMaterialConditionID_tblPartMaterialGroup", key, "ConditionId"},
    Column{"fldStandard_tblPartMaterialGroup", key, "StandardId"},
};
constexpr std::array part_material_index_columns{
    Column{"fldpkPartMaterialGroupId_tblPartMaterialIndex", key, nullptr},
    Column{"fldStandard_tblPartMaterialIndex", key, nullptr},
    Column{"fldpkPartmaterialId_tblPartMaterialIndex", key, nullptr},
};
constexpr std::array operation_columns{
    Column{"fldpkNameIdentifierID_tblOperation", id, "Id"},
    Column{"fldName_tblOperation", key, "Name"},
    Column{"fldStandard_tblOperation", key, "StandardId"},
};
constexpr std::array speed_feed_data_columns{
    Column{speed_feed_sequence, sequence, nullptr},
    Column{"fldpkID_tblSpeedFeedData", id, "Id"},
    Column{"fldfkOperationID_tblSpeedFeedData", text, "OperationId"},
    Column{"fldfkPartMaterialGroupID_tblSpeedFeedData", text, "PartMaterialGroupId"},
    Column{"fldfkCutterMaterialID_tblSpeedFeedData", text, "CutterMaterialId"},
    Column{"fldStandard_tblSpeedFeedData", text, "StandardId"},
    Column{"fldValueAImperial_tblSpeedFeedData", number, "ValueAImperial"},
    Column{"fldValueAMetric_tblSpeedFeedData", number, "ValueAMetric"},
    Column{"fldValueBImperial_tblSpeedFeedData", number, "ValueBImperial"},
    Column{"fldValueBMetric_tblSpeedFeedData", number, "ValueBMetric"},
    Column{"fldValueCImperial_tblSpeedFeedData", number, "ValueCImperial"},
    Column{"fldValueCMetric_tblSpeedFeedData", number, "ValueCMetric"},
    Column{"fldValueDImperial_tblSpeedFeedData", number, "ValueDImperial"},
    Column{"fldValueDMetric_tblSpeedFeedData", number, "ValueDMetric"},
    Column{"fldFactor_tblSpeedFeedData", number, "Factor"},
    Column{"fldNote_tblSpeedFeedData", text, "Note"},
};
constexpr std::array kb_tool_columns{
    Column{"fldpkID_tblKbTool", id, nullptr},
    Column{"fldToolID_tblKbTool", key, nullptr},
    Column{"fldKind_tblKbTool", whole, nullptr},
};
constexpr std::array kb_tool_parameter_columns{
    Column{"fldfkToolRecordID_tblKbToolParameter", key, nullptr},
    Column{"fldIndex_tblKbToolParameter", key_whole, nullptr},
    Column{"fldCode_tblKbToolParameter", whole, nullptr},
    Column{"fldValue_tblKbToolParameter", text, nullptr},
};
constexpr std::array kb_tool_group_link_columns{
    Column{"fldfkToolRecordID_tblKbToolGroupLink", key, nullptr},
    Column{"fldfkGroupID_tblKbToolGroupLink", key, nullptr},
};

bool is_key(const Column& column) {
  return column.kind == key || column.kind == key_whole;
}
bool is_value(const Column& column) {
  return column.kind != id && column.kind != sequence;
}

/// The columns that pass, each as `text` gives it, with a separator in between.
std::string joined(const Table& table, bool (*passes)(const Column&), const char* separator,
                   const std::function<std::string(const Column&)>& text) {
  std::string result;
  for (const Column& column : table.columns) {
    if (!passes(column)) continue;
    if (!result.empty()) result += separator;
    result += text(column);
  }
  return result;
}

std::string name_of(const Column& column) {
  return column.name;
}
std::string name_equals(const Column& column) {
  return std::string(column.name) + "=?";
}

std::string type_of(ColumnKind kind, Dialect dialect) {
  switch (kind) {
    case id:
      return "text not null unique";
    case number:
      return "double precision not null";
    case key_whole:
    case whole:
      return "integer not null";
    case sequence:
      return dialect == Dialect::sqlite ? "integer primary key autoincrement"
                                        : "bigint generated always as identity primary key";
    default:
      return "text not null";
  }
}

const char* id_column(const Table& table) {
  for (const Column& column : table.columns) {
    if (column.kind == id) return column.name;
  }
  return "";
}

}  // namespace

namespace tables {
constexpr Table cutting_tool_group{"tblCuttingToolGroup", cutting_tool_group_columns, nullptr};
constexpr Table part_material_standard{"tblPartMaterialStandard", part_material_standard_columns, nullptr};
constexpr Table cutter_material{"tblCutterMaterial", cutter_material_columns, nullptr};
constexpr Table part_material{"tblPartMaterial", part_material_columns, nullptr};
constexpr Table part_material_class{"tblPartMaterialClass", part_material_class_columns, nullptr};
constexpr Table part_material_condition{"tblPartMaterialCondition", part_material_condition_columns, nullptr};
constexpr Table part_material_group{"tblPartMaterialGroup", part_material_group_columns, nullptr};
constexpr Table part_material_index{"tblPartMaterialIndex", part_material_index_columns, nullptr};
constexpr Table operation{"tblOperation", operation_columns, nullptr};
constexpr Table speed_feed_data{
    "tblSpeedFeedData", speed_feed_data_columns,
    "fldfkPartMaterialGroupID_tblSpeedFeedData, fldfkCutterMaterialID_tblSpeedFeedData, "
    "fldfkOperationID_tblSpeedFeedData, fldStandard_tblSpeedFeedData"};
constexpr Table kb_tool{"tblKbTool", kb_tool_columns, nullptr};
constexpr Table kb_tool_parameter{"tblKbToolParameter", kb_tool_parameter_columns, nullptr};
constexpr Table kb_tool_group_link{"tblKbToolGroupLink", kb_tool_group_link_columns, nullptr};
}  // namespace tables

std::span<const Table* const> all_tables() {
  using namespace tables;
  static constexpr std::array<const Table*, 13> all{&cutting_tool_group,
                                                    &kb_tool,
                                                    &kb_tool_parameter,
                                                    &kb_tool_group_link,
                                                    &part_material_standard,
                                                    &part_material,
                                                    &part_material_class,
                                                    &part_material_condition,
                                                    &part_material_group,
                                                    &part_material_index,
                                                    &operation,
                                                    &cutter_material,
                                                    &speed_feed_data};
  return all;
}

std::vector<std::string> create_texts(const Table& table, Dialect dialect) {
  const auto every = [](const Column&) { return true; };
  const std::string table_name = table.name;
  std::string create = "create table if not exists " + table_name + " (" +
                       joined(table, every, ", ", [&](const Column& column) {
                         return std::string(column.name) + " " + type_of(column.kind, dialect);
                       });
  const std::string keys = joined(table, is_key, ", ", name_of);
  if (!keys.empty()) create += ", unique (" + keys + ")";
  std::vector<std::string> texts{create + ")"};
  if (table.index != nullptr) {
    texts.push_back("create index if not exists ix" + table_name + " on " + table_name + " (" + table.index +
                    ")");
  }
  return texts;
}

std::string insert_text(const Table& table) {
  const auto given = [](const Column& column) { return column.kind != sequence; };
  return "insert into " + std::string(table.name) + " (" + joined(table, given, ", ", name_of) +
         ") values (" + joined(table, given, ", ", [](const Column&) { return "?"; }) +
         ") on conflict do nothing";
}

std::string select_id_text(const Table& table) {
  return "select " + std::string(id_column(table)) + " from " + table.name + " where " +
         joined(table, is_key, " and ", name_equals);
}

std::string update_text(const Table& table) {
  return "update " + std::string(table.name) + " set " + joined(table, is_value, ", ", name_equals) +
         " where " + id_column(table) + "=?";
}

}  // namespace deskhost
