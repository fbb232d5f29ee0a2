#include "deskhost/inspect/html.h"

#include <initializer_list>
#include <set>

#include "deskhost/inspect/page.h"
#include "deskhost/picture/carrier.h"
#include "deskhost/picture/comparison.h"

namespace deskhost::inspect {
namespace {

using State = ToolReport::State;
using Names = std::set<std::string>;

std::string number_or_nothing(std::size_t number) {
  return number == 0 ? "" : std::to_string(number);
}

void put_finding(const Finding& each, Page& page) {
  const std::string severity = name_of(each.severity);
  const std::string line = std::string(title_of(each.source)) + " " + number_or_nothing(each.line);
  const std::string field = each.field ? std::to_string(*each.field) + " " + each.name : "";
  page.row({{severity, "i-" + severity},
            {line, "i-right"},
            {field},
            {each.tool},
            {each.value, "i-value"},
            {each.what},
            {each.stands.value_or(""), "i-value"},
            {each.advice}});
}

void put_findings(const Report& report, const std::string& title, bool notes, Page& page) {
  page.heading(title);
  bool any = false;
  for (const Finding& each : report.findings) {
    if ((each.severity == Severity::note) != notes) continue;
    if (!any)
      page.open_table({{""},
                       {"Line", "i-right"},
                       {"Field"},
                       {"Tool"},
                       {"Value"},
                       {"What happens"},
                       {"Stands"},
                       {"What to do"}});
    any = true;
    put_finding(each, page);
  }
  if (any) {
    page.close_table();
  } else {
    page.paragraph("None.");
  }
}

std::string cell(const Tool& tool, std::string_view parameter) {
  const automation::Value& value = tool.value(parameter);
  return value.is(automation::Value::Kind::Empty) ? "" : value.to_text();
}

void put_new_tools(const Report& report, Page& page) {
  page.heading("New tools: " + std::to_string(report.count(State::created)));
  if (report.count(State::created) == 0) return;
  page.open_table({{"Line", "i-right"},
                   {"Tool"},
                   {"Class", "i-right"},
                   {"Number", "i-right"},
                   {"Turret", "i-right"},
                   {"Station", "i-right"}});
  for (const ToolReport& each : report.tools) {
    if (each.state != State::created) continue;
    const Tool& tool = *report.after->tools().at(each.place);
    page.row({{lines_of(each), "i-right"},
              {each.name},
              {std::to_string(each.tool_class), "i-right"},
              {cell(tool, "ToolNumber"), "i-right"},
              {cell(tool, "TurretID"), "i-right"},
              {cell(tool, "StationID"), "i-right"}});
  }
  page.close_table();
}

void put_change(const std::string& line, const std::string& tool, const Change& each, Page& page) {
  const std::string name =
      each.kind == Change::Kind::parameter ? each.name : std::string(name_of(each.kind)) + " " + each.name;
  const std::string after =
      each.after.value_or("–") + (each.meaning.empty() ? "" : " (" + each.meaning + ")");
  page.row({{line, "i-right"},
            {tool},
            {each.field ? std::to_string(*each.field) : "", "i-right"},
            {name},
            {each.before.value_or("–"), "i-value"},
            {after, "i-value"}});
}

void put_changed_tools(const Report& report, Page& page) {
  page.heading("Changed tools: " + std::to_string(report.count(State::changed)));
  if (report.count(State::changed) == 0 && report.machine.empty()) return;
  page.open_table({{"Line", "i-right"}, {"Tool"}, {"Field", "i-right"}, {"What"}, {"Before"}, {"After"}});
  for (const ToolReport& each : report.tools) {
    if (each.state != State::changed) continue;
    bool is_first = true;
    for (const Change& change : each.changes) {
      put_change(is_first ? lines_of(each) : "", is_first ? each.name : "", change, page);
      is_first = false;
    }
  }
  for (const Change& change : report.machine) put_change("", "the machine", change, page);
  page.close_table();
}

/// The tools of a station, the concerned ones marked.
std::string tools_of(const Spot& spot, const Names& concerned) {
  std::string html;
  for (const ToolMark& tool : spot.tools) {
    if (!html.empty()) html += "<br>";
    html += concerned.contains(tool.name) ? "<mark>" + text_in_html(tool.name) + "</mark>"
                                          : text_in_html(tool.name);
  }
  return html;
}

void put_stations(const Report& report, const Names& before, const Names& after, Page& page) {
  const std::vector<Carrier> old = carriers_of(*report.before);
  const std::vector<Carrier> present = carriers_of(*report.after);
  for (std::size_t c = 0; c < std::min(old.size(), present.size()); ++c) {
    page.open_table({{present[c].title, "i-right"}, {"Before"}, {"After"}});
    for (std::size_t s = 0; s < std::min(old[c].spots.size(), present[c].spots.size()); ++s) {
      const std::string was = tools_of(old[c].spots[s], before);
      const std::string is = tools_of(present[c].spots[s], after);
      if (!was.empty() || !is.empty()) page.raw_row(std::to_string(present[c].spots[s].number), was, is);
    }
    page.close_table();
  }
}

void put_machine(const Report& report, Page& page) {
  Names before;
  Names after;
  for (const ToolReport& tool : report.tools) {
    if (tool.state != State::created && tool.state != State::changed) continue;
    after.insert(tool.name);
    if (tool.state == State::changed) before.insert(tool.name_before);
  }
  const std::string picture =
      draw_comparison({*report.before, before, "Before"}, {*report.after, after, "After"});
  page.heading("The machine before and after");
  if (picture.empty()) return page.paragraph("The document has no machine setup to show.");
  page.raw(picture);
  put_stations(report, before, after, page);
}

void put_tables(const Report& report, Page& page) {
  page.heading("Rows of the knowledge base");
  page.open_table({{"Table"}, {"Before", "i-right"}, {"New", "i-right"}, {"Written anew", "i-right"}});
  for (const TableRows& each : report.tables) {
    if (each.after == each.before && each.written_anew == 0) continue;
    page.row({{each.table},
              {std::to_string(each.before), "i-right"},
              {std::to_string(each.after - each.before), "i-right"},
              {std::to_string(each.written_anew), "i-right"}});
  }
  page.close_table();
}

void put_said(const std::vector<std::string>& texts, const std::string& title, Page& page) {
  if (texts.empty()) return;
  page.heading(title);
  for (const std::string& text : texts) page.paragraph(text);
}

}  // namespace

std::string html_of(const Report& report) {
  Page page("What an import of " + report.file + " would do");
  page.paragraph(report.document_file.empty() ? "Into an empty document."
                                              : "Into " + report.document_file + ".");
  for (const std::string& line : summary_of(report)) page.summary(line);
  put_findings(report, "Errors and warnings", false, page);
  put_changed_tools(report, page);
  put_new_tools(report, page);
  put_machine(report, page);
  put_tables(report, page);
  put_said(report.messages, "Messages that a user would see", page);
  put_said(report.failures, "Failures that the host would get", page);
  put_findings(report, "Notes", true, page);
  return page.html();
}

}  // namespace deskhost::inspect
