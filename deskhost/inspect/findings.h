#pragma once

#include <string>
#include <string_view>

#include "deskhost/inspect/report.h"
#include "deskhost/inspect/tool_file.h"
#include "deskhost/inspect/trial.h"

/// What is to be said of a file: each function looks for its own kinds of findings and adds them.
namespace deskhost::inspect {

/// All that the findings are made from.
struct Inspected {
  const Options& options;
  const ToolFile& file;
  std::string_view exchange_bytes;
  Trial& trial;
  /// The lines that the import got to, each with what the calls told of it.
  [[nodiscard]] std::size_t lines_read() const { return trial.watch.lines.size(); }
};

/// The bytes as such: character sets, line ends, an empty file.
void find_in_bytes(std::string_view bytes, Source source, Report& report);
/// Lines with too few or too many fields, and those with another separator.
void find_in_layout(const Inspected& inspected, Report& report);
/// Where the import stopped, and why.
void find_stop(const Inspected& inspected, Report& report);
/// Values that the host refuses, or takes otherwise than they stand.
void find_in_values(const Inspected& inspected, Report& report);
/// Who a line is about: identities, classes, tools of other names.
void find_in_identities(const Inspected& inspected, Report& report);
/// What the document makes of the tools: places, numbers, units, shifts, models.
void find_in_document(const Inspected& inspected, Report& report);
/// Materials, and the lines of the exchange file.
void find_in_base(const Inspected& inspected, Report& report);

Finding finding(Severity severity, std::string code, std::size_t line, std::string what, std::string advice);
/// The same about a field of a line.
Finding finding(Severity severity, std::string code, const DataLine& line, std::size_t field,
                std::string what, std::string advice);
/// About the tool of a line.
Finding about_tool(Severity severity, std::string code, const DataLine& line, std::string what,
                   std::string advice);

}  // namespace deskhost::inspect
