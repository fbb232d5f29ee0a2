#include <algorithm>
#include <set>

#include "deskhost/inspect/findings.h"
#include "formats/exchange_line.h"
#include "formats/export_fields.h"
#include "formats/text_lines.h"
#include "platform/text.h"

namespace deskhost::inspect {
namespace {

using formats::field_tool_material;

void find_materials(const Inspected& inspected, Report& report) {
  const bool has_base = !inspected.options.knowledge_base.empty();
  std::string made_names;
  std::size_t made_count = 0;
  for (std::size_t i = 0; i < inspected.lines_read(); ++i) {
    const DataLine& line = inspected.file.lines()[i];
    const WatchedLine& watched = inspected.trial.watch.lines[i];
    if (watched.material_failed) {
      report.findings.push_back(finding(Severity::warning, "material-failed", line, field_tool_material,
                                        "The cutter material can't be looked up: the tool comes without one.",
                                        "A name can't hold an apostrophe; else look at the knowledge base."));
    }
    if (!watched.material_made) continue;
    if (has_base) {
      report.findings.push_back(finding(Severity::note, "material-new", line, field_tool_material,
                                        "The knowledge base has no cutter material of this name: it is made.",
                                        "Nothing to do if the name is right."));
    } else {
      ++made_count;
      made_names += (made_names.empty() ? "\"" : ", \"") + *watched.material_made + "\"";
    }
  }
  if (has_base || made_count == 0) return;
  report.findings.push_back(finding(Severity::note, "no-knowledge-base", 0,
                                    "No knowledge base was given: an empty one stood in, and " +
                                        counted(made_count, "cutter material") +
                                        " had to be made: " + made_names + ".",
                                    "Give it with --kb SOURCE; it is copied."));
}

Finding about_row(Severity severity, std::string code, std::size_t number, std::string_view line,
                  std::string what, std::string advice) {
  constexpr std::size_t enough = 60;
  Finding made = finding(severity, std::move(code), number, std::move(what), std::move(advice));
  made.source = Source::exchange;
  made.value = platform::from_code_page(line.substr(0, enough));
  return made;
}

/// Why a line can't be read, as the add-in's own reader tells it.
std::string fault_of(std::string_view line) {
  try {
    static_cast<void>(formats::parse_exchange_line(line).material_name());
  } catch (const automation::Failure& failure) {
    const auto fields = line.empty() ? 0 : std::ranges::count(line, ';') + 1;
    if (failure.error() == automation::Error::subscript_out_of_range) {
      return "the line has " + counted(static_cast<std::size_t>(fields), "field") + " and not 18";
    }
    return "the material's name is too wide for its columns of 10 and 20 characters";
  }
  if (line.find('\'') != line.npos) return "a name holds an apostrophe";
  return "the knowledge base refuses it";
}

void find_in_exchange(const Inspected& inspected, Report& report) {
  const auto& speeds = inspected.trial.watch.speeds;
  const bool was_read = inspected.trial.watch.reached_end;
  formats::TextLines lines{std::string(inspected.exchange_bytes)};
  std::size_t row = 0;
  std::optional<std::size_t> stopped;
  std::string fault;
  std::string stopper;
  while (const auto line = lines.next()) {
    if (formats::is_comment(*line)) continue;
    if (was_read && row == speeds.size()) {
      stopped = lines.number();
      fault = fault_of(*line);
      stopper = *line;
    } else if (was_read && row < speeds.size() && speeds[row].is_equal) {
      report.findings.push_back(about_row(
          Severity::warning, "row-again", lines.number(), *line,
          "The knowledge base has a row with all the same values, and gets a second one.",
          "The n-th line of a condition goes to the n-th row of its select: keep the lines of an operation "
          "together under conditions of their own."));
    }
    ++row;
  }
  report.exchange_lines = row;
  report.exchange_lines_read = speeds.size();
  if (!stopped) return;
  report.findings.push_back(about_row(
      Severity::error, "exchange-line", *stopped, stopper,
      "The reading stops here with a message, since " + fault + "; " + counted(row - speeds.size(), "row") +
          " from this line on " + (row - speeds.size() == 1 ? "is" : "are") + " lost.",
      "Let every line have at least 18 fields, and names that fit; a comment begins with \"*\"."));
}

}  // namespace

void find_in_base(const Inspected& inspected, Report& report) {
  find_materials(inspected, report);
  find_in_exchange(inspected, report);
}

}  // namespace deskhost::inspect
