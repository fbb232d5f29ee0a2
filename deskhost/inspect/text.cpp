#include "deskhost/inspect/text.h"

#include <algorithm>
#include <map>
#include <ostream>

#include "deskhost/console/text_table.h"
#include "platform/text.h"

namespace deskhost::inspect {
namespace {

using State = ToolReport::State;

constexpr std::size_t width = 100;
constexpr std::size_t indent = 10;
constexpr std::size_t tools_shown = 20;
constexpr std::size_t changes_shown = 12;
/// Findings of one kind, by severity.
constexpr std::array<std::size_t, 3> findings_shown{3, 10, 20};

constexpr const char* bold = "1";
constexpr std::array<const char*, 3> severity_colours{"36", "33", "1;31"};

/// At most so many characters, with a mark where there were more.
std::string shortened(const std::string& text, std::size_t most) {
  if (platform::character_count(text) <= most) return text;
  std::size_t at = 0;
  for (std::size_t count = 0; at < text.size(); ++at) {
    if (platform::begins_character(text[at]) && count++ == most - 1) break;
  }
  return text.substr(0, at) + "…";
}

std::string more(std::size_t count, std::string_view what) {
  return "… and " + std::to_string(count) + " more" + std::string(what);
}

class Writer {
 public:
  Writer(bool in_colour, std::ostream& out) : in_colour_(in_colour), out_(out) {}

  void heading(const std::string& text) { out_ << '\n' << painted(text, bold) << '\n'; }
  void line(const std::string& text) { out_ << text << '\n'; }
  [[nodiscard]] std::string painted(const std::string& text, const char* colour) const {
    return in_colour_ ? std::string("\033[") + colour + "m" + text + "\033[0m" : text;
  }
  /// The text in lines that the page holds, a word never broken unless it fills a line.
  void paragraph(const std::string& text, std::size_t left) {
    std::string row;
    for (std::size_t at = 0; at <= text.size();) {
      const std::size_t end = std::min(text.find(' ', at), text.size());
      const std::string word = text.substr(at, end - at);
      if (!row.empty() &&
          left + platform::character_count(row) + 1 + platform::character_count(word) > width) {
        out_ << std::string(left, ' ') << row << '\n';
        row.clear();
      }
      row += (row.empty() ? "" : " ") + word;
      at = end + 1;
    }
    out_ << std::string(left, ' ') << row << '\n';
  }
  void table(const TextTable& table) { table.print(out_); }

 private:
  bool in_colour_;
  std::ostream& out_;
};

std::string place_of(const Finding& each) {
  std::string text = title_of(each.source);
  if (each.line > 0) text += (text.empty() ? "line " : ", line ") + std::to_string(each.line);
  if (text.empty()) text = "the file";
  if (each.field) text += ", field " + std::to_string(*each.field) + " " + each.name;
  if (!each.value.empty()) text += " \"" + shortened(printable(each.value), 30) + "\"";
  if (!each.tool.empty()) text += ", tool " + shortened(printable(each.tool), 40);
  return text;
}

void write_finding(const Finding& each, Writer& writer) {
  const auto severity = static_cast<std::size_t>(each.severity);
  std::string word = name_of(each.severity);
  word.resize(indent, ' ');
  writer.line(writer.painted(word, severity_colours[severity]) + shortened(place_of(each), width - indent));
  writer.paragraph(printable(each.what), indent);
  writer.paragraph("→ " + printable(each.advice), indent);
}

void write_findings(const Report& report, Writer& writer) {
  writer.heading("Findings");
  if (report.findings.empty()) writer.line("none");
  std::map<std::pair<std::string, Severity>, std::size_t> counts;
  for (const Finding& each : report.findings) {
    const std::size_t most = findings_shown[static_cast<std::size_t>(each.severity)];
    if (counts[{each.code, each.severity}]++ < most) write_finding(each, writer);
  }
  for (const auto& [kind, count] : counts) {
    const std::size_t most = findings_shown[static_cast<std::size_t>(kind.second)];
    if (count <= most) continue;
    writer.line(more(count - most, " of the kind " + kind.first + " (" + name_of(kind.second) + ")"));
  }
}

std::vector<const ToolReport*> tools_in(const Report& report, State state) {
  std::vector<const ToolReport*> found;
  for (const ToolReport& tool : report.tools) {
    if (tool.state == state) found.push_back(&tool);
  }
  return found;
}

std::string cell(const Tool& tool, std::string_view parameter) {
  const automation::Value& value = tool.value(parameter);
  return value.is(automation::Value::Kind::Empty) ? "-" : printable(value.to_text());
}

void write_new_tools(const Report& report, Writer& writer) {
  const auto tools = tools_in(report, State::created);
  writer.heading("New tools: " + std::to_string(tools.size()));
  if (tools.empty()) return;
  using enum Align;
  TextTable table({{"Line", right},
                   {"ToolID"},
                   {"Class", right},
                   {"Number", right},
                   {"Turret", right},
                   {"Station", right},
                   {"Values", right}});
  for (std::size_t i = 0; i < std::min(tools.size(), tools_shown); ++i) {
    const Tool& tool = *report.after->tools().at(tools[i]->place);
    table.add(
        {lines_of(*tools[i]), shortened(printable(tools[i]->name), 45), std::to_string(tools[i]->tool_class),
         cell(tool, "ToolNumber"), cell(tool, "TurretID"), cell(tool, "StationID"),
         std::to_string(std::ranges::count(tools[i]->changes, Change::Kind::parameter, &Change::kind))});
  }
  writer.table(table);
  if (tools.size() > tools_shown) writer.line("  " + more(tools.size() - tools_shown, ""));
}

std::string side(const std::optional<std::string>& value) {
  return value ? "\"" + printable(*value) + "\"" : "none";
}

void write_changes(const std::vector<Change>& changes, std::size_t most, Writer& writer) {
  for (std::size_t i = 0; i < std::min(changes.size(), most); ++i) {
    const Change& each = changes[i];
    std::string text = each.kind == Change::Kind::parameter ? "" : std::string(name_of(each.kind)) + " ";
    text += printable(each.name) + ": " + side(each.before) + " → " + side(each.after);
    if (!each.meaning.empty()) text += " (" + printable(each.meaning) + ")";
    if (each.field) text += ", field " + std::to_string(*each.field);
    writer.paragraph(text, 4);
  }
  if (changes.size() > most) writer.line("    " + more(changes.size() - most, ""));
}

void write_changed_tools(const Report& report, Writer& writer) {
  const auto tools = tools_in(report, State::changed);
  writer.heading("Changed tools: " + std::to_string(tools.size()));
  for (std::size_t i = 0; i < std::min(tools.size(), tools_shown); ++i) {
    const std::string lines = lines_of(*tools[i]);
    writer.line("  " + shortened(printable(tools[i]->name), 80) + (lines.empty() ? "" : ", line " + lines));
    write_changes(tools[i]->changes, changes_shown, writer);
  }
  if (tools.size() > tools_shown) writer.line("  " + more(tools.size() - tools_shown, ""));
}

void write_names(const Report& report, State state, const std::string& title, Writer& writer) {
  const auto tools = tools_in(report, state);
  writer.heading(title + ": " + std::to_string(tools.size()));
  std::string names;
  for (std::size_t i = 0; i < std::min(tools.size(), tools_shown); ++i) {
    names += (i == 0 ? "" : ", ") + printable(tools[i]->name);
  }
  if (tools.size() > tools_shown) names += " " + more(tools.size() - tools_shown, "");
  if (!names.empty()) writer.paragraph(names, 2);
}

void write_tables(const Report& report, Writer& writer) {
  writer.heading("Rows of the knowledge base");
  using enum Align;
  TextTable table({{"Table"}, {"Before", right}, {"New", right}, {"Written anew", right}});
  for (const TableRows& each : report.tables) {
    if (each.after == each.before && each.written_anew == 0) continue;
    table.add({each.table, std::to_string(each.before), std::to_string(each.after - each.before),
               std::to_string(each.written_anew)});
  }
  if (table.is_empty()) {
    writer.line("  none new, none changed");
  } else {
    writer.table(table);
  }
}

void write_said(const std::vector<std::string>& texts, const std::string& title, Writer& writer) {
  if (texts.empty()) return;
  writer.heading(title);
  for (const std::string& text : texts) writer.paragraph(printable(text), 2);
}

}  // namespace

void write_text(const Report& report, bool in_colour, std::ostream& out) {
  Writer writer(in_colour, out);
  writer.paragraph(report.file + (report.document_file.empty() ? "" : " into " + report.document_file) +
                       ": what an import would do",
                   0);
  write_findings(report, writer);
  write_new_tools(report, writer);
  write_changed_tools(report, writer);
  write_names(report, State::unchanged, "Unchanged tools", writer);
  write_names(report, State::untouched, "Untouched tools", writer);
  if (!report.machine.empty()) {
    writer.heading("Machine");
    write_changes(report.machine, report.machine.size(), writer);
  }
  write_tables(report, writer);
  write_said(report.messages, "Messages that a user would see", writer);
  write_said(report.failures, "Failures that the host would get", writer);
  writer.heading("Summary");
  for (const std::string& line : summary_of(report)) writer.line(line);
}

}  // namespace deskhost::inspect
