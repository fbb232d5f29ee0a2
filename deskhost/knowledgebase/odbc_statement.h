#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "automation/value.h"
#include "deskhost/knowledgebase/odbc_connection.h"
#include "deskhost/knowledgebase/odbc_text.h"

namespace deskhost {

/// One ODBC statement: prepared once and executed with values, or executed as a text.
class OdbcStatement {
 public:
  explicit OdbcStatement(const OdbcConnection& connection);

  /// `text` has a "?" for each parameter; throws DatabaseFailure.
  void prepare(std::string_view text);
  /// Executes what was prepared. Values are texts, doubles and whole numbers, one for each "?". Throws
  /// DatabaseFailure; rows of an earlier execution are gone.
  void execute(std::span<const automation::Value> values);
  /// Executes a text as it stands.
  void execute_text(std::string_view text);

  /// Moves on to the next row; false behind the last one, where the rows are given up.
  bool fetch();
  /// A column of the current row, `index` from 0, asked for in ascending order: a double, a text, or empty
  /// for null.
  automation::Value column(std::size_t index);
  [[nodiscard]] std::size_t column_count() const noexcept { return columns_.size(); }
  /// The names of the columns as the database spells them.
  [[nodiscard]] std::vector<std::string> column_names() const;
  /// The rows that an insert, update or delete touched.
  [[nodiscard]] std::int64_t rows_touched() const;
  /// Gives up the rows that weren't fetched; harmless without any.
  void close() noexcept;

 private:
  struct Slot {
    OdbcText wide;
    std::string narrow;
    double number = 0;
    std::int32_t whole = 0;
    SQLLEN length = 0;
  };
  struct Column {
    std::string name;
    bool is_number;
  };
  void bind(std::size_t index, const automation::Value& value);
  void bind_text(SQLUSMALLINT number, Slot& slot, std::string text);
  template <class Unit>
  std::basic_string<Unit> read_text(SQLUSMALLINT number, SQLSMALLINT c_type, bool& is_null);
  void describe_columns();

  OdbcHandle<SQL_HANDLE_STMT> statement_;
  bool is_wide_;
  std::vector<Slot> slots_;  // what the driver reads during an execution
  std::vector<Column> columns_;
  bool described_ = false;
};

}  // namespace deskhost
