#include "deskhost/knowledgebase/odbc_statement.h"

#include <algorithm>
#include <array>

namespace deskhost {

using automation::Value;

namespace {

/// ODBC takes its texts as writable ones and doesn't write into them.
SQLCHAR* as_narrow(std::string_view text) {
  return reinterpret_cast<SQLCHAR*>(const_cast<char*>(text.data()));
}

}  // namespace

OdbcStatement::OdbcStatement(const OdbcConnection& connection)
    : statement_(connection.handle(), SQL_HANDLE_DBC), is_wide_(connection.is_wide()) {}

void OdbcStatement::prepare(std::string_view text) {
  if (is_wide_) {
    OdbcText wide = to_odbc(text);
    statement_.check(SQLPrepareW(statement_.get(), wide.data(), static_cast<SQLINTEGER>(wide.size())));
  } else {
    statement_.check(SQLPrepare(statement_.get(), as_narrow(text), static_cast<SQLINTEGER>(text.size())));
  }
  described_ = false;
}

void OdbcStatement::bind(std::size_t index, const Value& value) {
  Slot& slot = slots_[index];
  const auto number = static_cast<SQLUSMALLINT>(index + 1);
  switch (value.kind()) {
    case Value::Kind::R8:
      slot.number = value.to_double();
      statement_.check(SQLBindParameter(statement_.get(), number, SQL_PARAM_INPUT, SQL_C_DOUBLE, SQL_DOUBLE,
                                        15, 0, &slot.number, 0, nullptr));
      break;
    case Value::Kind::I2:
    case Value::Kind::I4:
      slot.whole = value.to_int32();
      statement_.check(SQLBindParameter(statement_.get(), number, SQL_PARAM_INPUT, SQL_C_SLONG, SQL_INTEGER,
                                        10, 0, &slot.whole, 0, nullptr));
      break;
    default:
      bind_text(number, slot, value.to_text());
  }
}

void OdbcStatement::bind_text(SQLUSMALLINT number, Slot& slot, std::string text) {
  SQLPOINTER data = nullptr;
  if (is_wide_) {
    slot.wide = to_odbc(text);
    slot.length = static_cast<SQLLEN>(slot.wide.size() * sizeof(SQLWCHAR));
    data = slot.wide.data();
  } else {
    slot.narrow = std::move(text);
    slot.length = static_cast<SQLLEN>(slot.narrow.size());
    data = slot.narrow.data();
  }
  statement_.check(SQLBindParameter(
      statement_.get(), number, SQL_PARAM_INPUT, is_wide_ ? SQL_C_WCHAR : SQL_C_CHAR,
      is_wide_ ? SQL_WVARCHAR : SQL_VARCHAR, static_cast<SQLULEN>(std::max<SQLLEN>(slot.length, 1)), 0, data,
      slot.length, &slot.length));
}

void OdbcStatement::execute(std::span<const Value> values) {
  close();
  if (slots_.size() < values.size()) slots_.resize(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) bind(i, values[i]);
  statement_.check(SQLExecute(statement_.get()));
  if (!described_) describe_columns();
}

void OdbcStatement::execute_text(std::string_view text) {
  close();
  if (is_wide_) {
    OdbcText wide = to_odbc(text);
    statement_.check(SQLExecDirectW(statement_.get(), wide.data(), static_cast<SQLINTEGER>(wide.size())));
  } else {
    statement_.check(SQLExecDirect(statement_.get(), as_narrow(text), static_cast<SQLINTEGER>(text.size())));
  }
  describe_columns();
}

void OdbcStatement::describe_columns() {
  SQLSMALLINT count = 0;
  statement_.check(SQLNumResultCols(statement_.get(), &count));
  columns_.clear();
  for (SQLSMALLINT number = 1; number <= count; ++number) {
    std::array<SQLWCHAR, 256> name{};
    SQLSMALLINT length = 0;
    SQLSMALLINT type = 0;
    statement_.check(SQLDescribeColW(statement_.get(), static_cast<SQLUSMALLINT>(number), name.data(),
                                     static_cast<SQLSMALLINT>(name.size()), &length, &type, nullptr, nullptr,
                                     nullptr));
    const bool is_number = type == SQL_DOUBLE || type == SQL_FLOAT || type == SQL_REAL;
    columns_.push_back({from_odbc(name.data(), static_cast<std::size_t>(length)), is_number});
  }
  described_ = true;
}

std::vector<std::string> OdbcStatement::column_names() const {
  std::vector<std::string> names;
  for (const Column& column : columns_) names.push_back(column.name);
  return names;
}

bool OdbcStatement::fetch() {
  const SQLRETURN result = SQLFetch(statement_.get());
  if (result == SQL_NO_DATA) {
    close();
    return false;
  }
  statement_.check(result);
  return true;
}

Value OdbcStatement::column(std::size_t index) {
  const auto number = static_cast<SQLUSMALLINT>(index + 1);
  SQLLEN length = 0;
  if (columns_.at(index).is_number) {
    double value = 0;
    statement_.check(SQLGetData(statement_.get(), number, SQL_C_DOUBLE, &value, sizeof value, &length));
    return length == SQL_NULL_DATA ? Value() : Value(value);
  }
  bool is_null = false;
  if (!is_wide_) {
    auto text = read_text<char>(number, SQL_C_CHAR, is_null);
    return is_null ? Value() : Value(std::move(text));
  }
  const auto text = read_text<SQLWCHAR>(number, SQL_C_WCHAR, is_null);
  return is_null ? Value() : Value(from_odbc(text.data(), text.size()));
}

template <class Unit>
std::basic_string<Unit> OdbcStatement::read_text(SQLUSMALLINT number, SQLSMALLINT c_type, bool& is_null) {
  std::basic_string<Unit> text;
  std::array<Unit, 256> piece;  // NOLINT(cppcoreguidelines-pro-type-member-init): filled by the driver
  for (;;) {
    SQLLEN length = 0;
    const SQLRETURN result =
        SQLGetData(statement_.get(), number, c_type, piece.data(), sizeof piece, &length);
    if (result == SQL_NO_DATA) return text;
    statement_.check(result);
    is_null = length == SQL_NULL_DATA;
    if (is_null) return {};
    const bool cut = length == SQL_NO_TOTAL || static_cast<std::size_t>(length) > sizeof piece - sizeof(Unit);
    // A cut piece ends with the driver's own 0.
    text.append(piece.data(), cut ? piece.size() - 1 : static_cast<std::size_t>(length) / sizeof(Unit));
    if (!cut) return text;
  }
}

std::int64_t OdbcStatement::rows_touched() const {
  SQLLEN rows = 0;
  statement_.check(SQLRowCount(statement_.get(), &rows));
  return rows;
}

void OdbcStatement::close() noexcept {
  SQLFreeStmt(statement_.get(), SQL_CLOSE);
}

}  // namespace deskhost
