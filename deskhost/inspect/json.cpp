#include "deskhost/inspect/json.h"

#include <nlohmann/json.hpp>

namespace deskhost::inspect {
namespace {

using Json = nlohmann::ordered_json;

template <class T>
Json or_null(const std::optional<T>& value) {
  return value ? Json(*value) : Json(nullptr);
}

Json or_null(const std::string& text) {
  return text.empty() ? Json(nullptr) : Json(text);
}

Json json_of_finding(const Finding& each) {
  return {{"severity", name_of(each.severity)},
          {"code", each.code},
          {"file", name_of(each.source)},
          {"line", each.line == 0 ? Json(nullptr) : Json(each.line)},
          {"field", or_null(each.field)},
          {"name", or_null(each.name)},
          {"tool", or_null(each.tool)},
          {"value", each.value},
          {"what", each.what},
          {"stands", or_null(each.stands)},
          {"advice", each.advice}};
}

Json json_of_changes(const std::vector<Change>& changes) {
  Json list = Json::array();
  for (const Change& each : changes) {
    Json change = {{"kind", name_of(each.kind)},
                   {"name", each.name},
                   {"before", or_null(each.before)},
                   {"after", or_null(each.after)},
                   {"field", or_null(each.field)}};
    if (!each.meaning.empty()) change["meaning"] = each.meaning;
    list.push_back(std::move(change));
  }
  return list;
}

Json json_of_tool(const ToolReport& tool) {
  return {{"state", name_of(tool.state)}, {"name", tool.name},   {"nameBefore", or_null(tool.name_before)},
          {"class", tool.tool_class},     {"lines", tool.lines}, {"changes", json_of_changes(tool.changes)}};
}

Json json_of_summary(const Report& report) {
  using State = ToolReport::State;
  return {{"errors", report.count(Severity::error)},
          {"warnings", report.count(Severity::warning)},
          {"notes", report.count(Severity::note)},
          {"toolsNew", report.count(State::created)},
          {"toolsChanged", report.count(State::changed)},
          {"toolsUnchanged", report.count(State::unchanged)},
          {"toolsUntouched", report.count(State::untouched)},
          {"lines", report.data_lines},
          {"linesRead", report.lines_read},
          {"exchangeLines", report.exchange_lines},
          {"exchangeLinesRead", report.exchange_lines_read},
          {"text", summary_of(report)}};
}

}  // namespace

std::string json_of(const Report& report) {
  Json findings = Json::array();
  for (const Finding& each : report.findings) findings.push_back(json_of_finding(each));
  Json tools = Json::array();
  for (const ToolReport& each : report.tools) tools.push_back(json_of_tool(each));
  Json tables = Json::array();
  for (const TableRows& each : report.tables) {
    tables.push_back({{"table", each.table},
                      {"before", each.before},
                      {"after", each.after},
                      {"writtenAnew", each.written_anew}});
  }
  const Json json = {{"schema", 1},
                     {"input",
                      {{"file", report.file},
                       {"document", or_null(report.document_file)},
                       {"exchange", or_null(report.exchange_file)},
                       {"knowledgeBase", or_null(report.knowledge_base)},
                       {"models", or_null(report.models)}}},
                     {"summary", json_of_summary(report)},
                     {"findings", std::move(findings)},
                     {"tools", std::move(tools)},
                     {"machine", json_of_changes(report.machine)},
                     {"tables", std::move(tables)},
                     {"messages", report.messages},
                     {"failures", report.failures}};
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace deskhost::inspect
