#include "deskhost/knowledgebase/stores.h"

#include <array>

#include "deskhost/knowledgebase/schema.h"
#include "deskhost/knowledgebase/tool_stores.h"

namespace deskhost {

using automation::Args;
using automation::id;
using automation::Member;
using automation::Record;
using automation::Value;

namespace {

using BaseRef = std::shared_ptr<Base>;

/// The values of the columns that pass, as the record has them.
template <class Passes>
std::vector<Value> values_of(const Table& table, const Record& record, Passes passes) {
  std::vector<Value> values;
  for (const Column& column : table.columns) {
    if (column.member == nullptr || !passes(column)) continue;
    const Value& value = record.at(column.member);
    // A member may come in with another kind than its column's.
    values.push_back(column.kind == ColumnKind::number ? Value(value.to_double()) : Value(value.to_text()));
  }
  return values;
}

/// Rows with a key: a second row of the same key isn't made, the first one's identifier is given.
class KeyedStore : public DeskObject {
 public:
  KeyedStore(BaseRef base, const char* name, const Table& table)
      : base_(std::move(base)),
        name_(name),
        table_(table),
        insert_(insert_text(table)),
        select_(select_id_text(table)) {}

  [[nodiscard]] std::string trace_name() const override { return name_; }

  Value call(Member member, Args args) override {
    if (member != Member("Add")) return DeskObject::call(member, args);
    const std::shared_ptr<Record> record = argument(args, 0).to_record();
    add(*record);
    return true;
  }

 private:
  void add(Record& record) {
    const auto is_key = [](const Column& column) { return column.kind == ColumnKind::key; };
    const std::vector<Value> keys = values_of(table_, record, is_key);
    std::string what_for = name_;
    for (const Value& key : keys) what_for += '\0' + key.to_text();
    Value& given = record.at("Id");
    const Value before = std::exchange(given, base_->new_id(what_for));
    try {
      const auto every = [](const Column&) { return true; };
      if (base_->execute(insert_, values_of(table_, record, every)) > 0) return;
      const Rows found = base_->query(select_, keys);
      if (found.rows.empty()) throw DatabaseFailure("a row can be neither made nor found", "HY000");
      given = found.rows[0][0].to_text();
    } catch (...) {
      given = before;
      throw;
    }
  }

  BaseRef base_;
  const char* name_;
  const Table& table_;
  std::string insert_;
  std::string select_;
};

/// Speeds and feeds have no key but their identifier, which the caller gives: no row that a seat wrote is
/// lost.
class SpeedFeedRows : public DeskObject {
 public:
  explicit SpeedFeedRows(BaseRef base) : base_(std::move(base)) {}

  [[nodiscard]] std::string trace_name() const override { return "SpeedFeedRows"; }

  Value call(Member member, Args args) override {
    switch (member.id()) {
      case id("Add"):
        return add(*argument(args, 0).to_record());
      case id("Update"):
        return update(*argument(args, 0).to_record());
      default:
        return DeskObject::call(member, args);
    }
  }

 private:
  bool add(const Record& record) {
    static const std::string text = insert_text(tables::speed_feed_data);
    const auto every = [](const Column&) { return true; };
    return base_->execute(text, values_of(tables::speed_feed_data, record, every)) > 0;
  }
  bool update(const Record& record) {
    static const std::string text = update_text(tables::speed_feed_data);
    const auto is_value = [](const Column& column) { return column.kind != ColumnKind::id; };
    std::vector<Value> values = values_of(tables::speed_feed_data, record, is_value);
    values.emplace_back(record.at("Id").to_text());
    return base_->execute(text, values) > 0;
  }

  BaseRef base_;
};

struct KeyedStoreName {
  const char* name;
  const Table& table;
};
const std::array<KeyedStoreName, 8> keyed_stores{{
    {"CuttingToolGroups", tables::cutting_tool_group},
    {"PartMaterialStandards", tables::part_material_standard},
    {"CutterMaterials", tables::cutter_material},
    {"PartMaterials", tables::part_material},
    {"PartMaterialClasses", tables::part_material_class},
    {"PartMaterialConditions", tables::part_material_condition},
    {"PartMaterialGroups", tables::part_material_group},
    {"KbOperations", tables::operation},
}};

}  // namespace

std::shared_ptr<DeskObject> make_store(BaseRef base, Member name) {
  switch (name.id()) {
    case id("SpeedFeedRows"):
      return std::make_shared<SpeedFeedRows>(std::move(base));
    case id("KbTools"):
      return make_kb_tools(std::move(base));
    case id("KbToolParameters"):
      return make_kb_tool_parameters(std::move(base));
    default:
      break;
  }
  for (const KeyedStoreName& row : keyed_stores) {
    if (name == Member::named(row.name)) {
      return std::make_shared<KeyedStore>(std::move(base), row.name, row.table);
    }
  }
  return nullptr;
}

}  // namespace deskhost
