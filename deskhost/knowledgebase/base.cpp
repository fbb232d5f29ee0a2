#include "deskhost/knowledgebase/base.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <random>
#include <thread>

#include "deskhost/knowledgebase/outside.h"
#include "deskhost/knowledgebase/schema.h"
#include "deskhost/system/file_path.h"

namespace deskhost {

using automation::Failure;
using automation::Value;

namespace {

/// What SQLite keeps beside the file of a base.
constexpr std::array files_beside{"-wal", "-shm", "-journal"};

Rows rows_of(OdbcStatement& statement) {
  Rows result;
  result.columns = statement.column_names();
  if (result.columns.empty()) return result;
  while (statement.fetch()) {
    std::vector<Value>& row = result.rows.emplace_back();
    row.reserve(result.columns.size());
    for (std::size_t i = 0; i < result.columns.size(); ++i) row.push_back(statement.column(i));
  }
  return result;
}

/// Several seats write into one file: a writer waits for the others, and a process that is killed takes back
/// only what it hadn't committed.
void prepare_file_for_many_seats(OdbcStatement& statement) {
  using namespace std::chrono_literals;
  constexpr std::array settings{"pragma busy_timeout=60000", "pragma synchronous=normal"};
  for (const char* setting : settings) statement.execute_text(setting);
  statement.close();
  // The switch to a log needs the file for itself and doesn't wait for it. A file that can't be switched (a
  // read-only one) is used as it is.
  const auto give_up = std::chrono::steady_clock::now() + 10s;
  for (;;) {
    try {
      statement.execute_text("pragma journal_mode=wal");
      statement.close();
      return;
    } catch (const DatabaseFailure& failure) {
      const bool is_busy = std::string_view(failure.what()).find("lock") != std::string_view::npos;
      if (!is_busy || std::chrono::steady_clock::now() > give_up) return;
      std::this_thread::sleep_for(5ms);
    }
  }
}

}  // namespace

bool is_connection_string(std::string_view source) {
  const std::size_t sign = source.find('=');
  if (sign == source.npos) return false;
  std::error_code ignored;
  return source.find_first_of("/\\") >= sign && !std::filesystem::exists(path_of(source), ignored);
}

std::string name_with_parameters(const std::string& file, const std::string& parameters) {
  std::string name = "file:";
  for (const char c : file) {
    constexpr std::string_view signs = "%?#";
    if (signs.find(c) == signs.npos) {
      name += c;
    } else {
      std::array<char, 4> code{};
      std::snprintf(code.data(), code.size(), "%%%02X", static_cast<unsigned>(c));
      name += code.data();
    }
  }
  return name + parameters;
}

BaseSource base_source(const std::string& source) {
  if (is_connection_string(source)) return {.connection_string = source, .file = "", .is_temporary = false};
  if (source.find_first_of(";{}") != source.npos) {
    throw Failure("the name of a knowledge base can't have \";\", \"{\" or \"}\" in it: " + source);
  }
  return {.connection_string = sqlite_connection_string(source), .file = source, .is_temporary = false};
}

BaseSource temporary_base() {
  BaseSource source;
  source.is_temporary = true;
  return source;
}

Base::Base(BaseSource source, Open how) : source_(std::move(source)), how_(how) {
  if (source_.is_temporary) {
    files_.emplace_back([this] {
      if (source_.file.empty()) source_.file = make_temporary_file();
      return path_of(source_.file);
    });
    source_.connection_string = sqlite_connection_string(source_.file);
    for (const char* ending : files_beside) files_.emplace_back(path_of(source_.file + ending));
  }
  open();
}

Base::~Base() {
  prepared_.clear();
  direct_.reset();
  connection_.reset();
}

void Base::open_to_read() {
  if (source_.file.empty()) {
    connection_ = std::make_unique<OdbcConnection>(source_.connection_string);
    direct_.emplace(*connection_);
    return;
  }
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(path_of(source_.file), ignored))
    throw Failure("there is no knowledge base " + source_.file);
  // Writers have their log beside the file. Where there is none, nobody has the file open, and it is read as
  // one that doesn't change: joining a log would leave files beside it, or need the right to.
  const bool has_writers = std::ranges::any_of(std::array{"-wal", "-journal"}, [&](const char* ending) {
    return std::filesystem::exists(path_of(source_.file + ending), ignored);
  });
  connection_ = std::make_unique<OdbcConnection>(
      sqlite_connection_string(source_.file, has_writers ? "?mode=ro" : "?immutable=1"));
  direct_.emplace(*connection_);
  direct_->execute_text("pragma busy_timeout=60000");
  direct_->close();
}

void Base::open() {
  if (how_ == Open::to_read) return open_to_read();
  const bool is_file = !source_.file.empty();
  std::error_code ignored;
  const bool was_there = is_file && std::filesystem::exists(path_of(source_.file), ignored);
  if (was_there && !std::filesystem::is_regular_file(path_of(source_.file), ignored))
    throw Failure(source_.file + " is no file, and a knowledge base has to be one");
  try {
    connect_and_prepare();
  } catch (const Failure&) {
    direct_.reset();
    connection_.reset();
    if (is_file && !was_there) {  // nothing half made stays
      std::filesystem::remove(path_of(source_.file), ignored);
      for (const char* ending : files_beside)
        std::filesystem::remove(path_of(source_.file + ending), ignored);
    }
    throw;
  }
}

void Base::connect_and_prepare() {
  connection_ = std::make_unique<OdbcConnection>(source_.connection_string);
  direct_.emplace(*connection_);
  if (connection_->dialect() == Dialect::sqlite) prepare_file_for_many_seats(*direct_);
  make_tables();
}

bool Base::has_all_tables() {
  try {
    for (const Table* table : all_tables()) {
      direct_->execute_text("select 1 from " + std::string(table->name) + " where 1=0");
    }
    direct_->close();
    return true;
  } catch (const DatabaseFailure&) {
    return false;
  }
}

void Base::make_tables() {
  if (has_all_tables()) return;
  try {
    Transaction transaction(*connection_);
    for (const Table* table : all_tables()) {
      for (const std::string& text : create_texts(*table, connection_->dialect()))
        direct_->execute_text(text);
    }
    transaction.commit();
  } catch (const DatabaseFailure& failure) {
    direct_.emplace(*connection_);
    if (has_all_tables()) return;  // another seat made them at the same moment
    throw Failure("the tables of the knowledge base can't be made: " + std::string(failure.what()));
  }
}

void Base::revive() {
  if (!is_lost_) return;
  prepared_.clear();
  direct_.reset();
  connection_.reset();
  open();
  is_lost_ = false;
}

template <class Work>
auto Base::watched(Work&& work) {
  ++statements_;
  if (!connection_ || !direct_) throw DatabaseFailure("the connection is lost", "08003");
  try {
    return std::forward<Work>(work)();
  } catch (const DatabaseFailure& failure) {
    if (failure.state().starts_with("08") || connection_->is_dead()) is_lost_ = true;
    throw;
  }
}

Rows Base::query(std::string_view text) {
  return watched([&] {
    direct_->execute_text(text);
    return rows_of(*direct_);
  });
}

Rows Base::query(const std::string& text, std::span<const Value> values) {
  return watched([&] {
    OdbcStatement& statement = prepared(text);
    statement.execute(values);
    return rows_of(statement);
  });
}

std::int64_t Base::execute(const std::string& text, std::span<const Value> values) {
  return watched([&] {
    OdbcStatement& statement = prepared(text);
    statement.execute(values);
    return statement.rows_touched();
  });
}

void Base::as_one(const std::function<void()>& work) {
  if (!connection_) throw DatabaseFailure("the connection is lost", "08003");
  Transaction transaction(*connection_);
  work();
  transaction.commit();
}

OdbcStatement& Base::prepared(const std::string& text) {
  const auto found = prepared_.find(text);
  if (found != prepared_.end()) return found->second;
  OdbcStatement statement(*connection_);
  statement.prepare(text);
  return prepared_.emplace(text, std::move(statement)).first->second;
}

std::string Base::new_id(std::string_view what_for) {
  std::array<char, 33> text{};
  if (source_.is_temporary) {
    const std::string key(what_for);
    const std::size_t count = static_cast<std::size_t>(++ids_made_[key]);
    std::uint64_t first = 14695981039346656037U;
    for (const char c : key + '#' + std::to_string(count))
      first = (first ^ static_cast<unsigned char>(c)) * 1099511628211U;
    std::uint64_t second = first;
    for (const char c : key) second = (second ^ static_cast<unsigned char>(c)) * 1099511628211U;
    std::snprintf(text.data(), text.size(), "%016llX%016llX", static_cast<unsigned long long>(first),
                  static_cast<unsigned long long>(second));
    return text.data();
  }
  static std::random_device source;
  std::snprintf(text.data(), text.size(), "%08X%08X%08X%08X", source(), source(), source(), source());
  return text.data();
}

}  // namespace deskhost
