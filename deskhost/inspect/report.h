#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "deskhost/model/document.h"

namespace deskhost::inspect {

enum class Severity {
  note,
  warning,  ///< a value or a tool isn't what the file says
  error,    ///< the import stops, or a tool is lost
};
enum class Source { tools, exchange, document };

/// Something that a reader of the file should know.
struct Finding {
  Severity severity = Severity::note;
  std::string code;  ///< "short-line": a stable name
  Source source = Source::tools;
  std::size_t line = 0;  ///< from 1; 0 for the file as a whole
  std::optional<std::size_t> field;
  std::string name;                   ///< of the field; empty without one
  std::string tool;                   ///< the identity in the line; empty without one
  std::string value;                  ///< as it stands in the file
  std::string what;                   ///< what the add-in and the host do
  std::optional<std::string> stands;  ///< the value afterwards, where there is one value to tell
  std::string advice;
};

/// Something that is otherwise behind the import. Without `before` it is new, without `after` gone.
struct Change {
  enum class Kind { parameter, property, flag, mark, solid, station };
  Kind kind;
  std::string name;  ///< of the parameter, the property, the solid, the station
  std::optional<std::string> before, after;
  std::optional<std::size_t> field;  ///< of the tool export file
  std::string meaning;               ///< of an identifier that stands in `after`: its name
};

struct ToolReport {
  enum class State { created, changed, unchanged, untouched };
  State state;
  std::string name;         ///< behind the import
  std::string name_before;  ///< the same, or that of before; empty for a new tool
  std::int32_t tool_class = 0;
  std::vector<std::size_t> lines;  ///< of the file
  std::vector<Change> changes;
  std::size_t place = 0;  ///< among the document's tools, from 0
};

struct TableRows {
  std::string table;
  std::int64_t before = 0, after = 0;
  std::uint64_t written_anew = 0;  ///< rows that stood there before
};

struct Report {
  std::string file, exchange_file, document_file, models, knowledge_base;  ///< empty for what wasn't given
  std::size_t data_lines = 0;
  std::size_t lines_read = 0;  ///< of them, those that the import got to
  std::size_t exchange_lines = 0, exchange_lines_read = 0;
  std::vector<Finding> findings;
  std::vector<ToolReport> tools;  ///< in the document's order
  std::vector<Change> machine;    ///< stations, and solids of no tool
  std::vector<TableRows> tables;
  std::vector<std::string> messages;  ///< boxes that a user would see
  std::vector<std::string> failures;  ///< handed back to the host
  std::shared_ptr<const Document> before, after;

  [[nodiscard]] std::size_t count(Severity severity) const;
  [[nodiscard]] std::size_t count(ToolReport::State state) const;
};

const char* name_of(Severity severity);
const char* name_of(Source source);
/// For a reader, in front of a line's number; empty for the tool export file.
const char* title_of(Source source);
const char* name_of(ToolReport::State state);
const char* name_of(Change::Kind kind);

/// "1 tool", "3 tools".
std::string counted(std::size_t count, std::string_view noun);

/// "5, 7": the lines of the file that are about a tool.
std::string lines_of(const ToolReport& tool);

/// The three lines that say how it stands.
std::array<std::string, 3> summary_of(const Report& report);

}  // namespace deskhost::inspect
