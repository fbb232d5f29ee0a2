#include "deskhost/inspect/report.h"

#include <algorithm>

namespace deskhost::inspect {

std::size_t Report::count(Severity severity) const {
  return static_cast<std::size_t>(std::ranges::count(findings, severity, &Finding::severity));
}

std::size_t Report::count(ToolReport::State state) const {
  return static_cast<std::size_t>(std::ranges::count(tools, state, &ToolReport::state));
}

const char* name_of(Severity severity) {
  constexpr std::array names{"note", "warning", "error"};
  return names[static_cast<std::size_t>(severity)];
}

const char* name_of(Source source) {
  constexpr std::array names{"tools", "exchange", "document"};
  return names[static_cast<std::size_t>(source)];
}

const char* title_of(Source source) {
  constexpr std::array titles{"", "exchange file", "document"};
  return titles[static_cast<std::size_t>(source)];
}

const char* name_of(ToolReport::State state) {
  constexpr std::array names{"new", "changed", "unchanged", "untouched"};
  return names[static_cast<std::size_t>(state)];
}

const char* name_of(Change::Kind kind) {
  constexpr std::array names{"parameter", "property", "flag", "mark", "solid", "station"};
  return names[static_cast<std::size_t>(kind)];
}

std::string counted(std::size_t count, std::string_view noun) {
  return std::to_string(count) + " " + std::string(noun) + (count == 1 ? "" : "s");
}

std::string lines_of(const ToolReport& tool) {
  std::string text;
  for (const std::size_t line : tool.lines) text += (text.empty() ? "" : ", ") + std::to_string(line);
  return text;
}

std::array<std::string, 3> summary_of(const Report& report) {
  using enum ToolReport::State;
  std::string read = std::to_string(report.lines_read) + " of " + counted(report.data_lines, "line");
  if (report.lines_read < report.data_lines) {
    read += ": " + counted(report.data_lines - report.lines_read, "tool") + " lost";
  }
  std::int64_t rows = 0;
  for (const TableRows& table : report.tables) rows += table.after - table.before;
  std::uint64_t anew = 0;
  for (const TableRows& table : report.tables) anew += table.written_anew;
  return {
      "Findings: " + counted(report.count(Severity::error), "error") + ", " +
          counted(report.count(Severity::warning), "warning") + ", " +
          counted(report.count(Severity::note), "note"),
      "Tools: " + std::to_string(report.count(created)) + " new, " + std::to_string(report.count(changed)) +
          " changed, " + std::to_string(report.count(unchanged)) + " unchanged, " +
          std::to_string(report.count(untouched)) + " untouched (" + read + ")",
      "Knowledge base: " + std::to_string(rows) + " new rows, " + std::to_string(anew) +
          " written anew; messages to the user: " + std::to_string(report.messages.size()),
  };
}

}  // namespace deskhost::inspect
