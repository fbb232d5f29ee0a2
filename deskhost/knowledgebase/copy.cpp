#include "deskhost/knowledgebase/copy.h"

#include <filesystem>

#include "deskhost/knowledgebase/schema.h"
#include "deskhost/system/file_path.h"

namespace deskhost {
namespace {

namespace fs = std::filesystem;
using automation::Failure;

// With the log of what isn't in the file yet: opening the file itself would write it.
void copy_file(const std::string& from, const std::string& to) {
  if (!fs::is_regular_file(path_of(from))) throw Failure("there is no knowledge base " + from);
  for (const char* const ending : {"", "-wal"}) {
    std::error_code error;
    if (!fs::exists(path_of(from + ending))) continue;
    fs::copy_file(path_of(from + ending), path_of(to + ending), error);
    if (error) throw Failure("the knowledge base " + from + " can't be read: " + error.message());
  }
}

void copy_rows(Base& from, Base& to) {
  to.as_one([&] {
    for (const Table* table : all_tables()) {
      std::string columns;
      std::string order;
      for (const Column& column : table->columns) {
        if (column.kind == ColumnKind::sequence) {
          order = " order by " + std::string(column.name);
        } else {
          columns += (columns.empty() ? "" : ", ") + std::string(column.name);
        }
      }
      const std::string insert = insert_text(*table);
      const Rows rows = from.query("select " + columns + " from " + table->name + order);
      for (const auto& row : rows.rows) to.execute(insert, row);
    }
  });
}

}  // namespace

BaseSource copy_of_base(const std::string& source, const std::string& file) {
  BaseSource copy = base_source(file);
  if (is_connection_string(source)) {
    Base from(base_source(source), Base::Open::to_read);
    Base to(copy, Base::Open::create);
    copy_rows(from, to);
  } else if (!source.empty()) {
    copy_file(base_source(source).file, file);
  }
  copy.is_temporary = true;
  return copy;
}

}  // namespace deskhost
