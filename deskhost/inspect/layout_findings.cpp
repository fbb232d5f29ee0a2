#include <algorithm>
#include <array>
#include <optional>

#include "automation/number.h"
#include "deskhost/inspect/findings.h"
#include "formats/export_fields.h"
#include "platform/text.h"

namespace deskhost::inspect {
namespace {

using formats::export_fields;
using formats::field_count;
using formats::FieldKind;
using Pieces = std::vector<std::string_view>;

Pieces pieces_of(std::string_view line) {
  Pieces pieces;
  for (;;) {
    const std::size_t end = line.find(';');
    pieces.push_back(line.substr(0, end));
    if (end == line.npos) return pieces;
    line.remove_prefix(end + 1);
  }
}

/// Whether a field of that kind could hold the text.
bool suits(FieldKind kind, std::string_view text) {
  constexpr std::size_t longest_code = 4;
  if (text.empty() || kind == FieldKind::text || kind == FieldKind::value) return true;
  if (kind == FieldKind::reserved) return true;
  if (kind == FieldKind::code && text.size() <= longest_code) return true;
  std::string number(text);
  std::ranges::replace(number, ',', '.');
  return automation::read_number(number).has_value();
}

/// The fields from `first` to `last` that don't suit what stands `shift` places behind them.
std::size_t misfits(const Pieces& pieces, std::size_t first, std::size_t last, std::size_t shift) {
  std::size_t count = 0;
  for (std::size_t field = first; field < last; ++field) {
    if (!suits(export_fields[field].kind, pieces[field + shift])) ++count;
  }
  return count;
}

/// The text field whose ";" best explains that there are `extra` pieces too many; nothing where the line is
/// sound and goes on behind its last field.
std::optional<std::size_t> torn_text(const Pieces& pieces, std::size_t extra) {
  std::optional<std::size_t> best;
  std::size_t least = misfits(pieces, 0, field_count, 0);
  for (std::size_t field = 0; field < field_count; ++field) {
    if (export_fields[field].kind != FieldKind::text) continue;
    const std::size_t count = misfits(pieces, 0, field, 0) + misfits(pieces, field + 1, field_count, extra);
    // Among neighbours that explain it alike: the one that has text on both sides.
    const bool is_torn = !pieces[field].empty() && !pieces[field + extra].empty();
    if (count < least || (count == least && best && is_torn)) {
      least = count;
      best = field;
    }
  }
  return best;
}

std::string shown(std::string_view bytes) {
  return "\"" + platform::from_code_page(bytes) + "\"";
}

Finding long_line(const DataLine& line, std::string_view rest) {
  constexpr std::size_t examples = 4;
  const Pieces pieces = pieces_of(line.fields.line());
  const std::size_t extra = pieces.size() - field_count;
  const auto torn = torn_text(pieces, extra);
  if (!torn) {
    Finding made = about_tool(
        Severity::note, "more-fields", line,
        "The line goes on behind field 126: " + counted(extra, "field") + " more, which nobody reads.",
        "Nothing to do if the tool is right.");
    made.value = platform::from_code_page(rest);
    return made;
  }
  std::string what = "A \";\" in the text makes " + counted(extra, "field") +
                     " too many. The text is cut short, and all behind it is read in the wrong place:";
  std::size_t told = 0;
  for (std::size_t field = *torn + 1; field < field_count && told < examples; ++field) {
    if (pieces[field].empty() || export_fields[field].kind == FieldKind::reserved) continue;
    what += (told++ == 0 ? " " : ", ") + std::string(export_fields[field].name) + " " + shown(pieces[field]);
  }
  Finding made = finding(Severity::warning, "long-line", line, *torn, what + ".",
                         "Take the \";\" out of the text; there is no way to quote one.");
  const char* const begin = pieces[*torn].data();
  const std::string_view end = pieces[*torn + extra];
  made.value = platform::from_code_page({begin, end.data() + end.size()});
  return made;
}

struct Separator {
  char sign;
  const char* name;
};
constexpr std::array<Separator, 2> separators{{{',', "commas"}, {'\t', "tabs"}}};

std::string lower(std::string text) {
  std::ranges::transform(text, text.begin(),
                         [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return text;
}

/// `lost` are the tools from this line on; 0 where the import doesn't get here anyway.
Finding short_line(const DataLine& line, std::size_t lost) {
  const std::string_view text = line.fields.line();
  std::string code = "short-line";
  std::string what = "The line has " + counted(line.fields.count(), "field") + " and not 127";
  std::string advice = "Let the exporter write all 127 fields; text that isn't a tool begins with \"*\".";
  for (const Separator& other : separators) {
    if (std::ranges::count(text, other.sign) < 20 || line.fields.count() > 5) continue;
    code = "separator";
    what += ": its fields are separated by " + std::string(other.name);
    advice = "Let the exporter separate fields by \";\".";
  }
  if (lower(std::string(text.substr(0, 12))) == "fileversion:") {
    advice = "Write \"FileVersion:\" with its two capitals.";
  }
  what += lost > 0 ? ". The import stops here with a message, and " + counted(lost, "tool") +
                         " from this line on " + (lost == 1 ? "is" : "are") + " lost."
                   : ". It, too, would stop the import.";
  Finding made = finding(Severity::error, std::move(code), line.number, std::move(what), std::move(advice));
  made.tool = line.text(formats::field_tool_id);
  constexpr std::size_t enough = 60;
  made.value = platform::from_code_page(text.substr(0, enough));
  return made;
}

}  // namespace

void find_in_layout(const Inspected& inspected, Report& report) {
  const auto& lines = inspected.file.lines();
  if (lines.empty() && !inspected.file.bytes().empty()) {
    report.findings.push_back(
        finding(Severity::warning, "no-tools", 0,
                "No line of the file is a tool: the import makes none and says nothing.",
                "Look whether the exporter had tools to write, and for the line ends of the file."));
  }
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const DataLine& line = lines[i];
    if (!line.is_whole()) {
      // Of a file that isn't text, one line is enough.
      const bool is_text = line.fields.line().find('\0') == std::string_view::npos;
      if (!is_text && i > inspected.lines_read()) continue;
      report.findings.push_back(short_line(line, i == inspected.lines_read() ? lines.size() - i : 0));
      continue;
    }
    const std::string_view last = line.fields.bytes(field_count - 1);
    const auto used = static_cast<std::size_t>(last.data() + last.size() - line.fields.line().data());
    const std::string_view rest = line.fields.line().substr(used);
    if (!rest.empty()) report.findings.push_back(long_line(line, rest.substr(1)));
  }
}

}  // namespace deskhost::inspect
