#pragma once

#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "automation/value.h"
#include "deskhost/knowledgebase/odbc_statement.h"
#include "deskhost/system/leftover.h"

namespace deskhost {

/// Where a knowledge base is: what a user gives as SOURCE, taken apart.
struct BaseSource {
  std::string connection_string;
  /// The SQLite file; empty where the user gave a connection string, and for a temporary file that isn't
  /// made.
  std::string file;
  /// The file goes, with what the database keeps beside it, when the base does, and no other seat uses it.
  bool is_temporary = false;
};
/// A text with "=" is a connection string, unless a file of that name is there or a separator stands in front
/// of the "="; any other one names a file.
bool is_connection_string(std::string_view source);
/// Throws Failure for a file name that a connection string can't hold.
BaseSource base_source(const std::string& source);
/// A new file in the folder for temporary files, which is made with the base.
BaseSource temporary_base();

/// All rows of a select.
struct Rows {
  std::vector<std::string> columns;
  std::vector<std::vector<automation::Value>> rows;
};

/// An open knowledge base: its connection, and its statements, kept prepared. What fails throws
/// DatabaseFailure.
class Base {
 public:
  enum class Open {
    create,   ///< makes a file and tables that are missing
    to_read,  ///< only looks at what is there, and changes nothing about the file
  };
  Base(BaseSource source, Open how);
  Base(const Base&) = delete;
  Base& operator=(const Base&) = delete;
  ~Base();

  /// Connects anew where the way to the database was lost meanwhile.
  void revive();

  /// Executes a text as it comes; a statement without rows gives none.
  Rows query(std::string_view text);
  /// The rows of a prepared select.
  Rows query(const std::string& text, std::span<const automation::Value> values);
  /// Executes a prepared statement and gives the number of rows that it touched.
  std::int64_t execute(const std::string& text, std::span<const automation::Value> values);
  /// What `work` executes is stored as a whole or not at all.
  void as_one(const std::function<void()>& work);

  /// An identifier that no other seat makes. In a temporary base, which has no other seats, it follows from
  /// what it is for and from those that were made for the same: two imports of one file give the same ones.
  std::string new_id(std::string_view what_for = {});
  /// From 1: the recordsets of a session are numbered.
  int next_recordset_number() { return ++recordsets_; }
  /// The statements sent to the database so far.
  [[nodiscard]] std::uint64_t statements() const noexcept { return statements_; }

 private:
  void open();
  void open_to_read();
  void connect_and_prepare();
  void make_tables();
  [[nodiscard]] bool has_all_tables();
  OdbcStatement& prepared(const std::string& text);
  /// Runs `work`; where it fails, finds out whether the connection was lost.
  template <class Work>
  auto watched(Work&& work);

  BaseSource source_;
  Open how_;
  std::unique_ptr<OdbcConnection> connection_;
  std::optional<OdbcStatement> direct_;
  std::unordered_map<std::string, OdbcStatement> prepared_;
  bool is_lost_ = false;
  int recordsets_ = 0;
  std::unordered_map<std::string, int> ids_made_;  // for what, in a temporary base
  std::list<Leftover> files_;                      // of a temporary base
  std::uint64_t statements_ = 0;
};

}  // namespace deskhost
