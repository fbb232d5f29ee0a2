#pragma once

#include <span>
#include <string>
#include <vector>

#include "deskhost/knowledgebase/odbc_connection.h"

namespace deskhost {

/// What a column holds. A table's key is made of its key columns: the database keeps it unique.
enum class ColumnKind { id, key, key_whole, text, number, whole, sequence };

struct Column {
  const char* name;
  ColumnKind kind;
  const char* member;  ///< of the record that a store is given; null for none
};

struct Table {
  const char* name;
  std::span<const Column> columns;
  const char* index;  ///< the columns that it is searched by beside its key, or null
};

namespace tables {
extern const Table cutting_tool_group;
extern const Table part_material_standard;
extern const Table cutter_material;
extern const Table part_material;
extern const Table part_material_class;
extern const Table part_material_condition;
extern const Table part_material_group;
extern const Table part_material_index;
extern const Table operation;
extern const Table speed_feed_data;
extern const Table kb_tool;
extern const Table kb_tool_parameter;
extern const Table kb_tool_group_link;
}  // namespace tables
/// All of them, in the order in which a reader would look at them.
std::span<const Table* const> all_tables();

/// The order of adding in tblSpeedFeedData, which has no column of that meaning of its own.
inline constexpr const char* speed_feed_sequence = "fldSequence_tblSpeedFeedData";

/// The statements that make a table with its index where they are missing.
std::vector<std::string> create_texts(const Table& table, Dialect dialect);

/// Parameters: a value for each column but the sequence, in order. Makes nothing where the key is taken.
std::string insert_text(const Table& table);
/// Parameters: the key columns in order. Gives the identifier.
std::string select_id_text(const Table& table);
/// Parameters: a value for each column but identifier and sequence, in order, then the identifier.
std::string update_text(const Table& table);

}  // namespace deskhost
