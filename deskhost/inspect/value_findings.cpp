#include <algorithm>
#include <array>
#include <cmath>

#include "automation/number.h"
#include "deskhost/inspect/changes.h"
#include "deskhost/inspect/findings.h"
#include "formats/export_fields.h"

namespace deskhost::inspect {
namespace {

using automation::Value;
using catalogue::Kind;
using formats::export_fields;

bool is_given(const DataLine& line, std::size_t field) {
  const std::string text = line.text(field);
  return !text.empty() && text != "0";
}

bool offers(const DataLine& line, std::size_t field, const Refusal& refusal) {
  return !line.is_empty(field) && (!refusal.value || *refusal.value == line.text(field));
}

/// The field that the refused value came from.
std::size_t source_field(const DataLine& line, const Refusal& refusal) {
  if (refusal.is_property) return field_of_property(refusal.name).value_or(0);
  if (refusal.name == "LatheToolOrientation" && is_given(line, formats::field_orientation_code)) {
    return formats::field_orientation_code;
  }
  // Two parameters take the tool's number too: one in place of its own field, one in front of it.
  if (refusal.name == "StationID" && !is_given(line, formats::field_station_id)) {
    return formats::field_tool_number;
  }
  if (refusal.name == "LengthCompRegister" && !offers(line, formats::field_length_comp_register, refusal)) {
    return formats::field_tool_number;
  }
  return field_of_parameter(refusal.name).value_or(0);
}

std::string quoted(const std::string& text) {
  return "\"" + text + "\"";
}

std::optional<std::string> value_afterwards(const Tool& tool, const Refusal& refusal) {
  if (!refusal.is_property) return text_of(tool.value(refusal.name));
  const CustomProperties* const properties = tool.existing_custom_properties();
  const auto property = properties ? properties->find(refusal.name) : nullptr;
  return property ? text_of(property->value()) : std::nullopt;
}

std::string with_stands(std::string what, const std::optional<std::string>& stands) {
  return what + (stands ? "; " + quoted(*stands) + " stands." : "; the tool has none.");
}

Kind kind_of(const Refusal& refusal) {
  if (refusal.is_property) return Kind::whole;
  const auto parameter = catalogue::find(refusal.name);
  return parameter ? catalogue::parameters()[*parameter].kind : Kind::text;
}

struct Reason {
  std::string why, advice;
};

Reason reason_of(const std::string& text, Kind kind, bool is_code) {
  std::string with_point = text;
  std::ranges::replace(with_point, ',', '.');
  const auto number = automation::read_number(with_point);
  const std::string like(catalogue::hint(kind));
  const std::string or_code = is_code ? " or its code, such as 4H" : "";
  const std::string advice = "G" + like.substr(1) + or_code + ".";
  if (number && with_point != text) {
    return {"has a decimal comma", "Write it with a point: " + with_point + "."};
  }
  if (number) return {"is out of range", advice};
  const bool begins_as_one = text.find_first_of("0123456789") != std::string::npos;
  return {begins_as_one ? "is no number as a whole" : "is no number", advice};
}

Finding refused_value(const DataLine& line, const WatchedLine& watched, const Refusal& refusal,
                      std::size_t field) {
  const auto stands = value_afterwards(*watched.tool, refusal);
  const std::string target = (refusal.is_property ? "custom property " : "") + refusal.name;
  Finding made;
  if (line.is_empty(field)) {
    made = finding(Severity::warning, "empty-value", line, field,
                   with_stands("The host takes no empty text for " + target, stands),
                   "An empty field doesn't clear a value: give the value, or clear it in the document.");
  } else {
    const Reason reason =
        reason_of(line.text(field), kind_of(refusal), field == formats::field_orientation_code);
    const char* const who = refusal.why == Refusal::Why::not_converted ? "The add-in" : "The host";
    made = finding(
        Severity::warning, "refused", line, field,
        with_stands(quoted(line.text(field)) + " " + reason.why + ". " + who + " drops it for " + target,
                    stands),
        reason.advice);
  }
  made.stands = stands;
  return made;
}

/// An empty field whose parameter has a value that stays.
bool keeps_value(const WatchedLine& watched, const Refusal& refusal) {
  return !watched.is_new && !refusal.is_property && value_afterwards(*watched.tool, refusal);
}

void find_refusals(const DataLine& line, const WatchedLine& watched, Report& report) {
  std::string empty_ones;
  std::size_t empty = 0;
  for (const Refusal& refusal : watched.refusals) {
    const std::size_t field = source_field(line, refusal);
    if (refusal.why == Refusal::Why::no_such_parameter) {
      if (line.is_empty(field)) continue;
      report.findings.push_back(
          finding(Severity::note, "not-of-class", line, field,
                  "A tool of class " + std::to_string(watched.tool->tool_class()) + " has no " +
                      refusal.name + ": the value is dropped.",
                  "Nothing to do if the class is right: every field is offered to every tool."));
    } else if (line.is_empty(field) && !keeps_value(watched, refusal)) {
      ++empty;
      empty_ones += (empty == 1 ? "" : ", ") + std::to_string(field) + " " + refusal.name;
    } else {
      report.findings.push_back(refused_value(line, watched, refusal, field));
    }
  }
  if (empty == 0) return;
  Finding made = about_tool(Severity::note, "empty-fields", line,
                            counted(empty, "field") +
                                " without a text where the host takes a number alone: the tool gets no such "
                                "values.",
                            "Nothing to do if the tool needs none of them.");
  made.value = std::move(empty_ones);
  report.findings.push_back(std::move(made));
}

/// The parameters that hold whole numbers, with the fields that they are filled from.
std::vector<std::pair<catalogue::Index, std::size_t>> whole_fields() {
  std::vector<std::pair<catalogue::Index, std::size_t>> found;
  for (catalogue::Index index = 0; index < catalogue::parameters().size(); ++index) {
    const catalogue::Parameter& row = catalogue::parameters()[index];
    const auto field = field_of_parameter(row.name);
    if (row.kind == Kind::whole && field) found.emplace_back(index, *field);
  }
  return found;
}

bool is_written(const DataLine& line, const WatchedLine& watched, std::string_view parameter,
                std::size_t field) {
  // What only a new tool gets.
  constexpr std::array<std::string_view, 3> of_new_tools{"ToolNumber", "TurretID", "StationID"};
  if (!watched.is_new && std::ranges::find(of_new_tools, parameter) != of_new_tools.end()) return false;
  return std::ranges::none_of(watched.refusals, [&](const Refusal& refusal) {
    return refusal.name == parameter && source_field(line, refusal) == field;
  });
}

void find_rounded(const DataLine& line, const WatchedLine& watched, Report& report) {
  static const auto wholes = whole_fields();
  const auto find = [&](std::size_t field, std::string_view name, const std::optional<std::string>& stands) {
    const auto number = automation::read_number(line.text(field));
    if (!number || *number == std::trunc(*number)) return;
    Finding made = finding(Severity::warning, "rounded", line, field,
                           std::string(name) + " is a whole number: " + quoted(line.text(field)) +
                               " is rounded, halves to the even number.",
                           "Give a whole number.");
    made.stands = stands;
    report.findings.push_back(std::move(made));
  };
  if (watched.is_new)
    find(formats::field_tool_class, "The tool's class", std::to_string(watched.tool->tool_class()));
  for (const auto& [index, field] : wholes) {
    const std::string_view name = catalogue::parameters()[index].name;
    if (line.is_empty(field) || !is_written(line, watched, name, field)) continue;
    find(field, name, text_of(watched.tool->value(index)));
  }
}

void find_prefixes(const DataLine& line, Report& report) {
  using enum formats::Field;
  for (const std::size_t field : {field_tool_shift_x, field_tool_shift_y, field_tool_shift_z}) {
    const std::string text = line.text(field);
    if (text.empty()) continue;
    const double kept = automation::numeric_prefix(text);
    if (automation::read_number(text) == kept) continue;
    const std::string kept_text = automation::shortest_text(kept);
    Finding made = finding(Severity::warning, "shift-prefix", line, field,
                           "Of " + quoted(text) + " the add-in saves " + kept_text +
                               ": a turned tool's shift is worked out from that.",
                           "Give a plain decimal number with a point.");
    made.stands = kept_text;
    report.findings.push_back(std::move(made));
  }
}

}  // namespace

void find_in_values(const Inspected& inspected, Report& report) {
  for (std::size_t i = 0; i < inspected.lines_read(); ++i) {
    const DataLine& line = inspected.file.lines()[i];
    const WatchedLine& watched = inspected.trial.watch.lines[i];
    find_refusals(line, watched, report);
    find_rounded(line, watched, report);
    find_prefixes(line, report);
  }
}

}  // namespace deskhost::inspect
