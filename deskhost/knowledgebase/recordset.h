#pragma once

#include "deskhost/knowledgebase/base.h"
#include "deskhost/model/desk_object.h"

namespace deskhost {

/// The rows of a statement, standing on the first one. Rows of tblSpeedFeedData come in the order in which
/// they were added, on every database; the others as the database gives them.
class Recordset : public DeskObject {
 public:
  Recordset(int number, Rows rows);

  [[nodiscard]] std::string trace_name() const override;
  automation::Value get(automation::Member member, automation::Args args) override;
  automation::Value call(automation::Member member, automation::Args args) override;

  /// The value of a column, by its name regardless of case, in the current row; throws Failure without one.
  [[nodiscard]] automation::Value field(std::string_view name) const;

 private:
  void move(automation::Args args);
  [[nodiscard]] bool has_row() const;

  int number_;
  Rows rows_;
  std::int64_t at_ = 0;  // -1: in front of the first row
};

}  // namespace deskhost
