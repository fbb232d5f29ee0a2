#include "toollist/tool_row.h"

#include <string>

#include "automation/number.h"
#include "formats/tool_identity.h"
#include "foundation/global.h"
#include "toollist/list_file.h"
#include "toollist/skipping.h"

namespace mQuorvexList {
namespace {

constexpr int decimals_of_time = 2;

std::string row_of(const host::Tool& tool, std::string_view ident, double time,
                   const std::optional<TurretStation>& place, std::string_view orientation) {
  const auto parameter = [&](std::string_view name) {
    return tool.ToolParameters().Item(name).Value().to_text();
  };
  std::string row(ident);
  row += ";;" + std::to_string(tool.Number());
  row += ";" + parameter("LengthCompRegister");
  row += ";;" + std::to_string(place ? place->turret : tool.Turret());
  row += ";" + automation::rounded_text(time, decimals_of_time);
  row += ";" + std::to_string(place ? place->station : tool.Station());
  row += ";" + parameter(orientation);
  return row;
}

}  // namespace

void WriteToolListRow(const host::Tool& tool, OperatingTimes& times, std::optional<TurretStation> place) {
  const std::string name = tool.Name();
  const std::optional<std::string_view> ident = tool_identity::second_of_two(name);
  if (!ident) {
    global::show_message(name + global::text("MSG", "notAllowedID", " is not allowed Toolid!"));
    return;
  }
  if (!automation::read_number(*ident)) return;

  Skipping skipping;
  const double time = times.of(tool);
  if (times.has_operations()) skipping.begin();  // at the first operation
  const bool mill = skipping.test([&] { return global::IsMillStyle(tool); });
  skipping.statement([&] {
    list_file().write_line(row_of(tool, *ident, time, place, mill ? "Orientation" : "LatheToolOrientation"));
  });
}

}  // namespace mQuorvexList
