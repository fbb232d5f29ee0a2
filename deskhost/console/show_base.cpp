#include "deskhost/console/show_base.h"

#include <array>
#include <span>
#include <sstream>

#include "automation/number.h"
#include "deskhost/console/text_table.h"
#include "deskhost/knowledgebase/schema.h"

namespace deskhost {

using automation::Value;

namespace {

constexpr const char* tools_by_group =
    "select g.fldName_tblCuttingToolGroup, t.fldToolID_tblKbTool, t.fldKind_tblKbTool, "
    "(select count(*) from tblKbToolParameter where "
    "fldfkToolRecordID_tblKbToolParameter=t.fldpkID_tblKbTool) "
    "from tblKbTool t "
    "left join tblKbToolGroupLink l on l.fldfkToolRecordID_tblKbToolGroupLink=t.fldpkID_tblKbTool "
    "left join tblCuttingToolGroup g on "
    "g.fldpkNameIdentifierID_tblCuttingToolGroup=l.fldfkGroupID_tblKbToolGroupLink "
    "order by 1, 2";

// A group of class and condition can be that of several materials; its rows are shown under each.
constexpr const char* speeds_by_material =
    "select s.fldName_tblPartMaterialStandard, m.fldName_tblPartMaterial, k.fldName_tblPartMaterialClass, "
    "c.fldName_tblPartMaterialCondition, o.fldName_tblOperation, u.fldName_tblCutterMaterial, "
    "d.fldValueAMetric_tblSpeedFeedData, d.fldValueBMetric_tblSpeedFeedData, "
    "d.fldValueCMetric_tblSpeedFeedData, "
    "d.fldValueDMetric_tblSpeedFeedData, d.fldValueAImperial_tblSpeedFeedData, "
    "d.fldValueBImperial_tblSpeedFeedData, d.fldValueCImperial_tblSpeedFeedData, "
    "d.fldValueDImperial_tblSpeedFeedData, d.fldNote_tblSpeedFeedData "
    "from tblSpeedFeedData d "
    "left join tblPartMaterialStandard s on "
    "s.fldNameIdentifierId_tblPartMaterialStandard=d.fldStandard_tblSpeedFeedData "
    "left join tblPartMaterialGroup g on "
    "g.fldpkID_tblPartMaterialGroup=d.fldfkPartMaterialGroupID_tblSpeedFeedData "
    "left join tblPartMaterialClass k on "
    "k.fldpkNameIdentifierID_tblPartMaterialClass=g.fldfkPartMaterialClassID_tblPartMaterialGroup "
    "left join tblPartMaterialCondition c on "
    "c.fldpkNameIdentifierID_tblPartMaterialCondition=g.fldfkPartMaterialConditionID_tblPartMaterialGroup "
    "left join tblPartMaterialIndex i on "
    "i.fldpkPartMaterialGroupId_tblPartMaterialIndex=g.fldpkID_tblPartMaterialGroup "
    "left join tblPartMaterial m on "
    "m.fldpkNameIdentifierId_tblPartMaterial=i.fldpkPartmaterialId_tblPartMaterialIndex "
    "left join tblOperation o on o.fldpkNameIdentifierID_tblOperation=d.fldfkOperationID_tblSpeedFeedData "
    "left join tblCutterMaterial u on "
    "u.fldpkNameIdentifierID_tblCutterMaterial=d.fldfkCutterMaterialID_tblSpeedFeedData "
    "order by 1, 2, 3, 4, 5, 6, d.fldSequence_tblSpeedFeedData";

std::string cell(const Value& value) {
  if (value.is(Value::Kind::Empty)) return "-";
  if (value.is(Value::Kind::R8)) return automation::shortest_text(value.to_double());
  return printable(value.to_text());
}

void add_counts(Base& base, Page& page, std::ostream& out) {
  TextTable table({{"Table"}, {"Rows", Align::right}});
  for (const Table* row : all_tables()) {
    const Rows count = base.query("select count(*) from " + std::string(row->name));
    table.add({row->name, count.rows.at(0).at(0).to_text()});
  }
  table.print(out);
  page.json["tables"] = table.json();
}

/// The rows of a select; consecutive rows that agree in the first `group_columns` columns stand in a table of
/// their own under what they agree in.
nlohmann::ordered_json add_groups(const Rows& rows, std::size_t group_columns,
                                  std::span<const TextTable::Column> columns, std::ostream& out) {
  nlohmann::ordered_json groups = nlohmann::ordered_json::array();
  const auto group_of = [&](const std::vector<Value>& row) {
    std::string text;
    for (std::size_t i = 0; i < group_columns; ++i) text += (i == 0 ? "" : ": ") + cell(row[i]);
    return text;
  };
  for (auto row = rows.rows.begin(); row != rows.rows.end();) {
    const std::string group = group_of(*row);
    TextTable table({columns.begin(), columns.end()});
    for (; row != rows.rows.end() && group_of(*row) == group; ++row) {
      std::vector<std::string> cells;
      for (std::size_t i = group_columns; i < row->size(); ++i) cells.push_back(cell((*row)[i]));
      table.add(std::move(cells));
    }
    out << '\n' << group << '\n';
    table.print(out);
    groups.push_back({{"group", group}, {"rows", table.json()}});
  }
  return groups;
}

}  // namespace

Page show_base(Base& base) {
  Page page;
  std::ostringstream out;
  add_counts(base, page, out);

  const std::array<TextTable::Column, 3> tool_columns{
      {{"Tool"}, {"Kind", Align::right}, {"Parameters", Align::right}}};
  page.json["tools"] = add_groups(base.query(tools_by_group), 1, tool_columns, out);

  const auto number = [](const char* heading) { return TextTable::Column{heading, Align::right}; };
  const std::array<TextTable::Column, 13> speed_columns{{{"Class"},
                                                         {"Condition"},
                                                         {"Operation"},
                                                         {"Cutter material"},
                                                         number("A metric"),
                                                         number("B metric"),
                                                         number("C metric"),
                                                         number("D metric"),
                                                         number("A imperial"),
                                                         number("B imperial"),
                                                         number("C imperial"),
                                                         number("D imperial"),
                                                         {"Note"}}};
  page.json["speeds_and_feeds"] = add_groups(base.query(speeds_by_material), 2, speed_columns, out);
  page.text = out.str();
  return page;
}

}  // namespace deskhost
