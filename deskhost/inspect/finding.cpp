#include "deskhost/inspect/findings.h"
#include "formats/export_fields.h"

namespace deskhost::inspect {

Finding finding(Severity severity, std::string code, std::size_t line, std::string what, std::string advice) {
  Finding made;
  made.severity = severity;
  made.code = std::move(code);
  made.line = line;
  made.what = std::move(what);
  made.advice = std::move(advice);
  return made;
}

Finding about_tool(Severity severity, std::string code, const DataLine& line, std::string what,
                   std::string advice) {
  Finding made = finding(severity, std::move(code), line.number, std::move(what), std::move(advice));
  made.tool = line.text(formats::field_tool_id);
  return made;
}

Finding finding(Severity severity, std::string code, const DataLine& line, std::size_t field,
                std::string what, std::string advice) {
  Finding made = about_tool(severity, std::move(code), line, std::move(what), std::move(advice));
  made.field = field;
  made.name = formats::export_fields[field].name;
  made.value = line.text(field);
  return made;
}

}  // namespace deskhost::inspect
