#pragma once

#include <string_view>

#include "deskhost/knowledgebase/odbc_handle.h"

namespace deskhost {

enum class Dialect { sqlite, postgresql };

/// An open ODBC connection with its environment. Statements have to go before it.
class OdbcConnection {
 public:
  /// Throws DatabaseFailure; a database of another kind than those in Dialect is refused.
  explicit OdbcConnection(std::string_view connection_string);
  OdbcConnection(const OdbcConnection&) = delete;
  OdbcConnection& operator=(const OdbcConnection&) = delete;
  ~OdbcConnection();

  [[nodiscard]] Dialect dialect() const noexcept { return dialect_; }
  [[nodiscard]] SQLHANDLE handle() const noexcept { return connection_.get(); }
  /// Texts go to the driver in UTF-16. SQLite's driver has narrow functions alone, and its texts are UTF-8.
  [[nodiscard]] bool is_wide() const noexcept { return dialect_ != Dialect::sqlite; }
  /// The server or the way to it is gone.
  [[nodiscard]] bool is_dead() const noexcept;

 private:
  friend class Transaction;
  void autocommit(bool on);
  void end_transaction(SQLSMALLINT how);

  OdbcHandle<SQL_HANDLE_ENV> environment_;
  OdbcHandle<SQL_HANDLE_DBC> connection_;
  bool is_open_ = false;
  Dialect dialect_ = Dialect::sqlite;
};

/// What is executed while it lives is there as a whole after `commit`, or not at all. One at a time.
class Transaction {
 public:
  explicit Transaction(OdbcConnection& connection);
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  /// Takes back what wasn't committed.
  ~Transaction();
  /// Throws DatabaseFailure; nothing is stored then.
  void commit();

 private:
  OdbcConnection& connection_;
  bool open_ = true;
};

}  // namespace deskhost
