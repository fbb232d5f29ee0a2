#include <algorithm>
#include <map>

#include "automation/number.h"
#include "deskhost/inspect/changes.h"
#include "deskhost/inspect/findings.h"
#include "formats/export_fields.h"
#include "formats/tool_identity.h"

namespace deskhost::inspect {
namespace {

using namespace formats;

std::string quoted(const std::string& text) {
  return "\"" + text + "\"";
}

bool is_class(const std::string& text) {
  const auto number = automation::read_number(text);
  return number && *number > INT32_MIN && *number < INT32_MAX &&
         catalogue::is_tool_class(automation::to_int32(*number));
}

constexpr const char* class_advice = "Give the class of a tool: a whole number from 1 to 25.";

Finding wrong_class(const DataLine& line, const std::string& consequence) {
  const std::string text = line.text(field_tool_class);
  const bool is_heading = text == export_fields[field_tool_class].name;
  return finding(Severity::error, "class", line, field_tool_class,
                 quoted(text) + " is no class of a tool" + consequence,
                 is_heading ? "Begin a line of headings with \"*\"." : class_advice);
}

std::string lost_text(std::size_t lost) {
  return ": the import ends here with a failure, and " + counted(lost, "tool") + " from this line on " +
         (lost == 1 ? "is" : "are") + " lost.";
}

Finding stop(const Inspected& inspected, const DataLine& line, std::size_t lost) {
  const Trial& trial = inspected.trial;
  if (trial.failures.empty()) {
    return finding(Severity::error, "material-failed", line, field_tool_material,
                   "The cutter material of the first tool can't be looked up: the import ends as if the file "
                   "did, without a message, and " +
                       counted(lost, "tool") + (lost == 1 ? " is" : " are") + " lost.",
                   "A name can't hold an apostrophe; else look at the knowledge base.");
  }
  if (line.is_empty(field_tool_id)) {
    return finding(Severity::error, "identity-empty", line, field_tool_id,
                   "The tool has no identity" + lost_text(lost),
                   "Give every tool an identity: NAME#IDENTIFIER.");
  }
  if (trial.watch.class_refused || !is_class(line.text(field_tool_class))) {
    return wrong_class(line, lost_text(lost));
  }
  return about_tool(Severity::error, "failure", line, "\"" + trial.failures.back() + "\"" + lost_text(lost),
                    "Look for a tool without an identity in the document: it can't be compared with.");
}

/// What is wrong behind the place where the import stopped, as far as the line itself tells.
void find_behind(const DataLine& line, Report& report) {
  if (!line.is_whole()) return;
  if (line.is_empty(field_tool_id)) {
    report.findings.push_back(finding(Severity::error, "identity-empty", line, field_tool_id,
                                      "The tool has no identity. It, too, would stop the import.",
                                      "Give every tool an identity: NAME#IDENTIFIER."));
  } else if (!is_class(line.text(field_tool_class))) {
    report.findings.push_back(wrong_class(line, ". It, too, would stop the import, if the tool is new."));
  }
}

void find_form(const DataLine& line, Report& report) {
  const std::string identity = line.text(field_tool_id);
  const auto hashes = std::ranges::count(identity, '#');
  if (hashes != 1) {
    report.findings.push_back(finding(
        Severity::warning, hashes == 0 ? "identity-without-hash" : "identity-with-hashes", line,
        field_tool_id,
        hashes == 0 ? "The identity has no \"#\": it counts as identifier as a whole, and the tool list "
                      "leaves the tool out with a message."
                    : "The identity has more than one \"#\": what stands behind the last one is the "
                      "identifier, what stands behind the first one names the model, and the tool list "
                      "leaves the tool out with a message.",
        "Give every tool an identity of the form NAME#IDENTIFIER."));
  } else if (!automation::read_number(tool_identity::behind_last_hash(identity))) {
    report.findings.push_back(finding(Severity::note, "identifier-no-number", line, field_tool_id,
                                      "The identifier isn't a number: the tool list leaves the tool out "
                                      "without a word.",
                                      "Nothing to do if the tool isn't to be listed."));
  }
}

/// The operations of the document that name a tool by that text.
std::string operations_of(const Document& document, const std::string& tool_id) {
  std::size_t count = 0;
  double time = 0;
  for (const auto& operation : document.operations().items) {
    if (operation->tool_id != tool_id) continue;
    ++count;
    time += operation->duration;
  }
  if (count == 0) return {};
  return counted(count, "operation") + " of " + automation::rounded_text(time, 2) + " in all";
}

/// The tool stood in the document, under `before`.
void find_in_document_of(const DataLine& line, const WatchedLine& watched, const std::string& before,
                         const Document& document, Report& report) {
  const std::string identity = line.text(field_tool_id);
  if (before != identity) {
    const std::string operations = operations_of(document, before);
    Finding made = finding(
        operations.empty() ? Severity::note : Severity::warning, "renamed", line, field_tool_id,
        "The document has the tool as " + quoted(before) + "; it gets this name" +
            (operations.empty() ? "."
                                : ", and " + operations + " still name it by the old one: they lose it."),
        operations.empty() ? "Nothing to do if both are the same tool."
                           : "Give the tool the name of the document, or its operations the new one.");
    made.stands = identity;
    report.findings.push_back(std::move(made));
  }
  const auto number = automation::read_number(line.text(field_tool_class));
  if (number != static_cast<double>(watched.tool->tool_class())) {
    Finding made =
        finding(Severity::warning, "other-class", line, field_tool_class,
                "The document has the tool in class " + std::to_string(watched.tool->tool_class()) +
                    "; a tool's class doesn't change, and values that it hasn't are dropped.",
                "Delete the tool in the document first, or give it another identifier.");
    made.stands = std::to_string(watched.tool->tool_class());
    report.findings.push_back(std::move(made));
  }
}

}  // namespace

void find_stop(const Inspected& inspected, Report& report) {
  const auto& lines = inspected.file.lines();
  const std::size_t read = inspected.lines_read();
  if (read == lines.size()) return;
  if (lines[read].is_whole()) report.findings.push_back(stop(inspected, lines[read], lines.size() - read));
  for (std::size_t i = read + 1; i < lines.size(); ++i) find_behind(lines[i], report);
}

void find_in_identities(const Inspected& inspected, Report& report) {
  std::map<const Tool*, std::size_t> first_line;
  std::map<const Tool*, std::string> names_before;
  const auto& old = inspected.trial.before->tools().all();
  const auto& present = inspected.trial.after->tools().all();
  for (std::size_t i = 0; i < old.size(); ++i) names_before.emplace(present[i].get(), old[i]->name());

  for (std::size_t i = 0; i < inspected.lines_read(); ++i) {
    const DataLine& line = inspected.file.lines()[i];
    const WatchedLine& watched = inspected.trial.watch.lines[i];
    find_form(line, report);
    const auto [known, is_first] = first_line.emplace(watched.tool.get(), line.number);
    if (!is_first) {
      report.findings.push_back(finding(
          Severity::warning, "twice", line, field_tool_id,
          "Line " + std::to_string(known->second) + " has the same identifier: this line changes that tool.",
          "Let the exporter write each tool once."));
    }
    const auto before = names_before.find(watched.tool.get());
    if (before != names_before.end() && is_first) {
      find_in_document_of(line, watched, before->second, *inspected.trial.before, report);
    }
  }
}

}  // namespace deskhost::inspect
