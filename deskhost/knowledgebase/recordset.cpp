#include "deskhost/knowledgebase/recordset.h"

#include <algorithm>

#include "deskhost/knowledgebase/schema.h"

namespace deskhost {

using automation::Args;
using automation::Error;
using automation::Failure;
using automation::id;
using automation::Member;
using automation::Value;

namespace {

std::shared_ptr<Recordset> owner_of(const std::shared_ptr<DeskObject>& object) {
  return std::static_pointer_cast<Recordset>(object);
}

/// One column, in whatever row the recordset stands on when it is asked.
class Field : public DeskObject {
 public:
  Field(std::shared_ptr<Recordset> rows, std::string name) : rows_(std::move(rows)), name_(std::move(name)) {}
  [[nodiscard]] std::string trace_name() const override { return rows_->trace_name() + "." + name_; }
  Value get(Member member, Args args) override {
    switch (member.id()) {
      case id("Name"):
        return name_;
      case id("Value"):
        return rows_->field(name_);
      default:
        return DeskObject::get(member, args);
    }
  }

 private:
  std::shared_ptr<Recordset> rows_;
  std::string name_;
};

class Fields : public DeskObject {
 public:
  explicit Fields(std::shared_ptr<Recordset> rows) : rows_(std::move(rows)) {}
  [[nodiscard]] std::string trace_name() const override { return rows_->trace_name() + ".Fields"; }
  Value get(Member member, Args args) override {
    if (member != Member("Item")) return DeskObject::get(member, args);
    return Value(std::make_shared<Field>(rows_, argument(args, 0).to_text()));
  }

 private:
  std::shared_ptr<Recordset> rows_;
};

/// The place of a column, or the number of columns.
std::size_t column_at(const Rows& rows, std::string_view name) {
  const auto same = [&](const std::string& column) { return Member::named(column) == Member::named(name); };
  return static_cast<std::size_t>(std::ranges::find_if(rows.columns, same) - rows.columns.begin());
}

}  // namespace

Recordset::Recordset(int number, Rows rows) : number_(number), rows_(std::move(rows)) {
  const std::size_t sequence = column_at(rows_, speed_feed_sequence);
  if (sequence == rows_.columns.size() || rows_.rows.size() < 2) return;
  std::ranges::stable_sort(rows_.rows, {}, [&](const auto& row) { return row[sequence].to_double(); });
}

std::string Recordset::trace_name() const {
  return "Recordset(" + std::to_string(number_) + ")";
}

bool Recordset::has_row() const {
  return at_ >= 0 && at_ < static_cast<std::int64_t>(rows_.rows.size());
}

Value Recordset::field(std::string_view name) const {
  const std::size_t column = column_at(rows_, name);
  if (column == rows_.columns.size()) {
    throw Failure("Knowledge base: the result has no column " + std::string(name));
  }
  if (!has_row()) throw Failure("Knowledge base: the recordset has no current row");
  return rows_.rows[static_cast<std::size_t>(at_)][column];
}

Value Recordset::get(Member member, Args args) {
  switch (member.id()) {
    case id("EOF"):
      return rows_.rows.empty() || at_ >= static_cast<std::int64_t>(rows_.rows.size());
    case id("BOF"):
      return rows_.rows.empty() || at_ < 0;
    case id("RecordCount"):
      return static_cast<std::int32_t>(rows_.rows.size());
    case id("Fields"): {
      const auto self = owner_of(shared_from_this());
      if (args.empty()) return Value(std::make_shared<Fields>(self));
      return Value(std::make_shared<Field>(self, args[0].to_text()));
    }
    default:
      return DeskObject::get(member, args);
  }
}

Value Recordset::call(Member member, Args args) {
  switch (member.id()) {
    case id("MoveFirst"):
      at_ = 0;
      return {};
    case id("MoveNext"):
      ++at_;
      return {};
    case id("Move"):
      move(args);
      return {};
    case id("Close"):
      return {};
    default:
      return DeskObject::call(member, args);
  }
}

void Recordset::move(Args args) {
  const std::int64_t count = argument(args, 0).to_int32();
  const bool has_start = args.size() > 1 && !args[1].is(Value::Kind::Missing);
  const auto rows = static_cast<std::int64_t>(rows_.rows.size());
  std::int64_t start = at_;
  switch (has_start ? args[1].to_int32() : 0) {
    case 0:
      break;
    case 1:
      start = 0;
      break;
    case 2:
      start = rows - 1;
      break;
    default:
      throw Failure(Error::invalid_argument);
  }
  at_ = std::clamp<std::int64_t>(start + count, -1, rows);
}

}  // namespace deskhost
