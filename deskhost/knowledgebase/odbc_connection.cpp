#include "deskhost/knowledgebase/odbc_connection.h"

#include <array>
#include <cstdint>

#include "deskhost/knowledgebase/odbc_text.h"

namespace deskhost {
namespace {

/// A number as ODBC hands it over where an attribute takes a pointer.
SQLPOINTER as_pointer(std::uintptr_t value) {
  return reinterpret_cast<SQLPOINTER>(value);  // NOLINT(performance-no-int-to-ptr): ODBC's way
}

OdbcHandle<SQL_HANDLE_ENV> new_environment() {
  OdbcHandle<SQL_HANDLE_ENV> environment(SQL_NULL_HANDLE, SQL_HANDLE_ENV);
  environment.check(SQLSetEnvAttr(environment.get(), SQL_ATTR_ODBC_VERSION, as_pointer(SQL_OV_ODBC3), 0));
  return environment;
}

Dialect dialect_of(const OdbcHandle<SQL_HANDLE_DBC>& connection) {
  std::array<SQLWCHAR, 64> name{};
  SQLSMALLINT bytes = 0;
  connection.check(SQLGetInfoW(connection.get(), SQL_DBMS_NAME, name.data(), sizeof name, &bytes));
  const std::string text = from_odbc(name.data(), static_cast<std::size_t>(bytes) / sizeof(SQLWCHAR));
  if (text.starts_with("SQLite")) return Dialect::sqlite;
  if (text.starts_with("PostgreSQL")) return Dialect::postgresql;
  throw DatabaseFailure("a database of kind " + text + " isn't known, only SQLite and PostgreSQL", "HYC00");
}

}  // namespace

OdbcConnection::OdbcConnection(std::string_view connection_string)
    : environment_(new_environment()), connection_(environment_.get(), SQL_HANDLE_ENV) {
  std::string text(connection_string);
  std::array<SQLCHAR, 1024> completed{};
  SQLSMALLINT length = 0;
  connection_.check(SQLDriverConnect(connection_.get(), nullptr, reinterpret_cast<SQLCHAR*>(text.data()),
                                     static_cast<SQLSMALLINT>(text.size()), completed.data(),
                                     static_cast<SQLSMALLINT>(completed.size()), &length,
                                     SQL_DRIVER_NOPROMPT));
  is_open_ = true;
  try {
    dialect_ = dialect_of(connection_);
  } catch (...) {
    SQLDisconnect(connection_.get());
    throw;
  }
}

OdbcConnection::~OdbcConnection() {
  if (is_open_) SQLDisconnect(connection_.get());
}

bool OdbcConnection::is_dead() const noexcept {
  SQLUINTEGER dead = SQL_CD_FALSE;
  const SQLRETURN result =
      SQLGetConnectAttrW(connection_.get(), SQL_ATTR_CONNECTION_DEAD, &dead, sizeof dead, nullptr);
  return SQL_SUCCEEDED(result) && dead == SQL_CD_TRUE;
}

void OdbcConnection::autocommit(bool on) {
  connection_.check(SQLSetConnectAttrW(connection_.get(), SQL_ATTR_AUTOCOMMIT,
                                       as_pointer(on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF), 0));
}

void OdbcConnection::end_transaction(SQLSMALLINT how) {
  connection_.check(SQLEndTran(SQL_HANDLE_DBC, connection_.get(), how));
}

Transaction::Transaction(OdbcConnection& connection) : connection_(connection) {
  connection_.autocommit(false);
}

void Transaction::commit() {
  connection_.end_transaction(SQL_COMMIT);
  open_ = false;
}

Transaction::~Transaction() {
  try {
    if (open_) connection_.end_transaction(SQL_ROLLBACK);
    connection_.autocommit(true);
  } catch (const automation::Failure&) {
    // The connection is gone, and the transaction with it.
  }
}

}  // namespace deskhost
