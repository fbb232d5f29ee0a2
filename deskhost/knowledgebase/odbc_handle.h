#pragma once

#include <sql.h>
#include <sqlext.h>

#include <string>
#include <utility>

#include "automation/failure.h"

namespace deskhost {

/// A failure of the database, with the text that its driver gives.
class DatabaseFailure : public automation::Failure {
 public:
  DatabaseFailure(const std::string& text, std::string state)
      : Failure("Knowledge base: " + text), state_(std::move(state)) {}
  /// The five characters of SQLSTATE.
  [[nodiscard]] const std::string& state() const noexcept { return state_; }

 private:
  std::string state_;
};

/// The failure that the last call on the handle left behind.
DatabaseFailure failure_of(SQLSMALLINT kind, SQLHANDLE handle);

/// Owns one ODBC handle of a kind (SQL_HANDLE_ENV, _DBC, _STMT).
template <SQLSMALLINT kind>
class OdbcHandle {
 public:
  OdbcHandle() = default;
  /// Throws DatabaseFailure; `parent_kind` is the kind of `parent`.
  OdbcHandle(SQLHANDLE parent, SQLSMALLINT parent_kind) {
    if (!SQL_SUCCEEDED(SQLAllocHandle(kind, parent, &handle_))) throw failure_of(parent_kind, parent);
  }
  OdbcHandle(OdbcHandle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  OdbcHandle& operator=(OdbcHandle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  OdbcHandle(const OdbcHandle&) = delete;
  OdbcHandle& operator=(const OdbcHandle&) = delete;
  ~OdbcHandle() {
    if (handle_ != nullptr) SQLFreeHandle(kind, handle_);
  }

  [[nodiscard]] SQLHANDLE get() const noexcept { return handle_; }
  /// Throws the failure that a call on this handle left.
  void check(SQLRETURN result) const {
    if (!SQL_SUCCEEDED(result) && result != SQL_NO_DATA) throw failure_of(kind, handle_);
  }

 private:
  SQLHANDLE handle_ = nullptr;
};

}  // namespace deskhost
