#include "deskhost/knowledgebase/tool_stores.h"

#include "deskhost/knowledgebase/schema.h"

namespace deskhost {

using automation::Args;
using automation::Array;
using automation::id;
using automation::Member;
using automation::Record;
using automation::Value;

namespace {

using BaseRef = std::shared_ptr<Base>;

class KbTools : public DeskObject {
 public:
  explicit KbTools(BaseRef base) : base_(std::move(base)) {}

  [[nodiscard]] std::string trace_name() const override { return "KbTools"; }

  Value call(Member member, Args args) override {
    switch (member.id()) {
      case id("Find"):
        return find(argument(args, 0).to_text());
      case id("Add"):
        return add(*argument(args, 0).to_record());
      case id("Link"):
        link(*argument(args, 0).to_record(), argument(args, 1).to_text());
        return {};
      default:
        return DeskObject::call(member, args);
    }
  }

 private:
  std::shared_ptr<Record> find(const std::string& tool_id) {
    asked_for_ = tool_id;
    const std::vector<Value> values{tool_id};
    const Rows found = base_->query(
        "select fldpkID_tblKbTool, fldKind_tblKbTool from tblKbTool where fldToolID_tblKbTool=?", values);
    auto record = std::make_shared<Record>();
    record->type = "KbToolRecord";
    const bool is_stored = !found.rows.empty();
    record->members = {{"Id", is_stored ? found.rows[0][0] : Value("")},
                       {"Kind", is_stored ? found.rows[0][1].to_int16() : std::int16_t{0}}};
    return record;
  }

  /// False for a tool without an id.
  bool add(Record& record) {
    static const std::string insert = insert_text(tables::kb_tool);
    static const std::string select = select_id_text(tables::kb_tool);
    if (asked_for_.empty()) return false;
    const std::string fresh = base_->new_id(asked_for_);
    const std::vector<Value> values{fresh, asked_for_, record.at("Kind").to_int16()};
    if (base_->execute(insert, values) > 0) {
      record.at("Id") = fresh;
      return true;
    }
    const std::vector<Value> key{asked_for_};
    const Rows found = base_->query(select, key);
    if (found.rows.empty()) return false;
    record.at("Id") = found.rows[0][0].to_text();
    return true;
  }

  void link(const Record& record, const std::string& group_id) {
    static const std::string insert = insert_text(tables::kb_tool_group_link);
    const std::vector<Value> values{record.at("Id").to_text(), group_id};
    base_->execute(insert, values);
  }

  BaseRef base_;
  std::string asked_for_;
};

class KbToolParameters : public DeskObject {
 public:
  explicit KbToolParameters(BaseRef base) : base_(std::move(base)) {}

  [[nodiscard]] std::string trace_name() const override { return "KbToolParameters"; }

  Value call(Member member, Args args) override {
    switch (member.id()) {
      case id("Find"):
        return find(argument(args, 0).to_text());
      case id("Add"):
        add(argument(args, 0).to_array());
        return true;
      case id("Update"):
        update(argument(args, 0).to_array());
        return true;
      default:
        return DeskObject::call(member, args);
    }
  }

 private:
  std::string find(const std::string& tool_id) {
    const std::vector<Value> values{tool_id};
    const Rows found = base_->query(
        "select fldToolID_tblKbTool from tblKbTool where fldToolID_tblKbTool=? and exists (select 1 from "
        "tblKbToolParameter where fldfkToolRecordID_tblKbToolParameter=fldpkID_tblKbTool)",
        values);
    return found.rows.empty() ? "" : found.rows[0][0].to_text();
  }

  static std::vector<Value> values_of(const Value& row, std::size_t index) {
    const std::shared_ptr<Record> record = row.to_record();
    return {record->at("ToolRecordId").to_text(), static_cast<std::int32_t>(index),
            record->at("Code").to_int16(), record->at("Value").to_text()};
  }

  /// Nothing where the tool has parameters already: another seat was faster.
  void add(const Array& rows) {
    static const std::string insert = insert_text(tables::kb_tool_parameter);
    base_->as_one([&] {
      for (std::size_t i = 0; i < rows.size(); ++i) {
        // A seat that stores the same tool now is waited for at the first row.
        if (base_->execute(insert, values_of(rows[i], i)) == 0 && i == 0) return;
      }
    });
  }

  /// Rows are replaced in their order, so that two seats at the same tool wait for each other at the first
  /// one.
  void update(const Array& rows) {
    if (rows.empty()) return;
    static const std::string replace =
        "insert into tblKbToolParameter (fldfkToolRecordID_tblKbToolParameter, fldIndex_tblKbToolParameter, "
        "fldCode_tblKbToolParameter, fldValue_tblKbToolParameter) values (?, ?, ?, ?) on conflict "
        "(fldfkToolRecordID_tblKbToolParameter, fldIndex_tblKbToolParameter) do update set "
        "fldCode_tblKbToolParameter=excluded.fldCode_tblKbToolParameter, "
        "fldValue_tblKbToolParameter=excluded.fldValue_tblKbToolParameter";
    static const std::string cut_off =
        "delete from tblKbToolParameter where fldfkToolRecordID_tblKbToolParameter=? and "
        "fldIndex_tblKbToolParameter>=?";
    base_->as_one([&] {
      for (std::size_t i = 0; i < rows.size(); ++i) base_->execute(replace, values_of(rows[i], i));
      const std::vector<Value> rest{rows[0].to_record()->at("ToolRecordId").to_text(),
                                    static_cast<std::int32_t>(rows.size())};
      base_->execute(cut_off, rest);
    });
  }

  BaseRef base_;
};

}  // namespace

std::shared_ptr<DeskObject> make_kb_tools(BaseRef base) {
  return std::make_shared<KbTools>(std::move(base));
}

std::shared_ptr<DeskObject> make_kb_tool_parameters(BaseRef base) {
  return std::make_shared<KbToolParameters>(std::move(base));
}

}  // namespace deskhost
