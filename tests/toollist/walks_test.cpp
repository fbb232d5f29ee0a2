#include <algorithm>

#include "foundation/global.h"
#include "support/worlds.h"
#include "toollist/material_code.h"
#include "toollist/roads.h"
#include "toollist/row_test.h"
#include "toollist/tool_row.h"

namespace mQuorvexList {
namespace {

using automation::Value;
using worlds::Random;

// The walks as they are told, one host call after the other, without anything kept.
double walked_time(const host::Document& document, const host::Tool& tool) {
  double sum = 0;
  for (const host::Operation& operation : document.Operations().all()) {
    if (passes([&] {
          const Value theirs = operation.ToolSettings().Item("ToolID").Value();  // read first
          return equal(theirs, tool.ToolParameters().Item("ToolID").Value());
        })) {
      skip_failure([&] { sum += operation.Duration(); });
    }
  }
  return sum;
}

void walk_operations(const host::Document& document, Skipping& skipping) {
  std::vector<std::string> seen{""};
  for (const host::Operation& operation : document.Operations().all()) {
    skipping.begin();
    Value id;
    if (passes([&] {
          id = operation.ToolSettings().Item("ToolID").Value();
          return std::ranges::find(seen, id.to_text()) != seen.end();
        })) {
      continue;
    }
    seen.push_back(id.to_text());
    for (const host::Tool& tool : document.Tools().all()) {
      if (!passes([&] { return tool.Name() == id.to_text(); })) continue;
      OperatingTimes times(document);
      skipping.statement([&] { WriteToolListRow(tool, times); });
      break;
    }
  }
}

void walk_stations(const host::Document& document, const Skipping& skipping) {
  const host::Turrets turrets = document.MachineSetup().Turrets();
  for (int i = 1; i <= turrets.Count(); ++i) {
    for (int j = 1; j <= turrets.Item(i).Stations().Count(); ++j) {
      for (const host::Tool& tool : document.Tools().all()) {
        if (!skipping.test([&] {
              return TurretStation{tool.Turret(), tool.Station()} == TurretStation{i, j};
            }))
          continue;
        OperatingTimes times(document);
        skipping.statement([&] { WriteToolListRow(tool, times); });
      }
    }
  }
}

class WalksTest : public RowTest {
 protected:
  WalksTest() {
    const auto turrets = document->child("MachineSetup", "MachineSetup")->child("Turrets", "Turrets");
    for (const int stations : {2, 3}) {
      const auto turret = turrets->add("Turret")->child("Stations", "Stations");
      for (int i = 0; i < stations; ++i) turret->add("Station");
    }
  }

  /// Ids that clash: texts, numbers, the empty text, what can't be compared.
  static Value id(Random& random) {
    return random.of<Value>({"A#1", "B#2", "C#3x", "D", "A#1", "F#6", "", 0, 2, {}, automation::nothing});
  }
  void fill(Random& random) {
    operations->items.clear();
    tools->items.clear();
    world.refusals.clear();
    for (int i = random.below(9); i > 0; --i) add_operation(id(random), random.below(1000) / 7.0);
    for (int i = random.below(random.once_in(4) ? 41 : 7); i > 0; --i) {
      const Value its_id = id(random);
      const std::string name = its_id.text() ? *its_id.text() : "E#5";
      const auto tool = add_tool(name, 10 + random.below(16), random.below(3), random.below(4));
      tool->named["ToolID"]->members["Value"] = random.once_in(4) ? id(random) : its_id;
    }
    std::vector<std::string> refusable{"Tools.Count", "Operations.Count"};
    for (const auto& operation : operations->items) {
      for (const char* member :
           {".Duration", ".ToolSettings", ".ToolSettings.Item", ".ToolSettings.ToolID.Value"}) {
        refusable.push_back(operation->name() + member);
      }
    }
    for (const auto& tool : tools->items) {
      for (const char* member :
           {".Name", ".Turret", ".Station", ".Number", ".Item", ".Style", ".ToolID.Value"}) {
        refusable.push_back(tool->name() + member);
      }
    }
    worlds::refuse_some(random, world, refusable, random.of<int>({6, 30, 1000}));
  }
  /// What somebody else does while a row is written; an operation can come, go, or get another tool too.
  void change(Random& random, bool they_come) {
    const int kind = random.below(8);
    if (kind == 0 && they_come) {
      add_operation(id(random), random.below(1000) / 7.0);
    } else if (kind == 1 && !they_come && !operations->items.empty()) {
      operations->items.pop_back();
    } else if (kind == 3 && !operations->items.empty()) {
      const auto operation = random.of(operations->items);
      operation->child("ToolSettings", operation->name() + ".ToolSettings")->parameter("ToolID", "F#other");
    } else if (kind == 2 && !tools->items.empty()) {
      random.of(tools->items)->members["Turret"] = 7;  // off the machine
    } else {
      worlds::change(random, world, *tools, they_come, false);
    }
  }
  /// All that a road brings about in the world of that seed.
  template <class Road>
  std::string outcome(unsigned seed, Road&& road) {
    Random random(seed);
    fill(random);
    Skipping skipping;
    if (random.once_in(2)) skipping.begin();
    const int quiet = random.of<int>({2, 6, 1000});
    const bool they_come = random.once_in(2);
    world.on_attempt = [&](const std::string& access) {
      if (access.ends_with("rientation.Value") && random.once_in(quiet))
        change(random, they_come);  // a row's last
    };
    std::string text = outcome_of([&] { road(skipping); });
    world.on_attempt = {};
    return text;
  }
};

TEST_F(WalksTest, GiveWhatPlainWalksGive) {
  worlds::compare([&](unsigned seed, bool plainly) {
    OperatingTimes times(view());
    std::string all = outcome(seed, [&](const Skipping&) {
      for (const int round : {1, 2, 3}) {
        for (const auto& tool : std::vector(tools->items)) {
          const host::Tool one(tool);
          list_file().write_line(
              std::to_string(round + (plainly ? walked_time(view(), one) : times.of(one))));
          skip_failure([&] { (void)one.ToolParameters().Item("Orientation").Value(); });
        }
      }
    });
    all += outcome(seed, [&](Skipping& skipping) {
      if (plainly) return walk_operations(view(), skipping);
      OperatingTimes kept(view());
      operation_road(view(), kept, skipping);
    });
    return all + outcome(seed, [&](Skipping& skipping) {
             if (plainly) return walk_stations(view(), skipping);
             OperatingTimes kept(view());
             station_road(view(), kept, skipping);
           });
  });
}

// A quiet host is asked for what a row needs, and eight times more to see that it is quiet.
TEST_F(WalksTest, AskOnlySoOften) {
  for (int i = 0; i < 40; ++i) {
    add_operation("a#" + std::to_string(i), 0.5);
    add_tool("a#" + std::to_string(i), 1, 1, 1);
  }
  Skipping skipping;
  outcome_of([&] {
    OperatingTimes times(view());
    operation_road(view(), times, skipping);
  });
  int reads = 0;
  for (const auto& [member, count] : world.reads) reads += count;
  EXPECT_LE(reads, 40 * (16 + 8) + 10);
}

TEST_F(WalksTest, CountARefusalOfTheOperationsAsTheWalkWould) {
  add_operation("a#7", 64.2);
  const host::Tool tool(add_tool("a#7", 1, 1, 1));
  OperatingTimes times(view());
  world.refusals["Document.Operations"] = 2;
  EXPECT_THROW(times.of(tool), automation::Failure);
  Skipping skipping;
  EXPECT_THROW(operation_road(view(), times, skipping), automation::Failure);
  EXPECT_EQ(times.of(tool), 64.2);
}

TEST_F(RowTest, WritesNineFieldsOrNothing) {
  struct Row {
    const char* id;
    int style;
    Value length;
    const char* refused;
    const char* row;
    const char* row_without_operations;
  };
  for (const Row& row : {
           Row{"a#7", 14, 4.5, "", "7;;3;4,5;;1;0.38;5;2\r\n", "7;;3;4,5;;1;0;5;2\r\n"},
           Row{"a#7", 15, 4.5, "", "7;;3;4,5;;1;0.38;5;9\r\n", "7;;3;4,5;;1;0;5;9\r\n"},
           Row{"a#7", 25, "D1;x", "", "7;;3;D1;x;;1;0.38;5;2\r\n", "7;;3;D1;x;;1;0;5;2\r\n"},
           Row{"b# 007.50", 14, 1, "", " 007.50;;3;1;;1;0.12;5;2\r\n", " 007.50;;3;1;;1;0;5;2\r\n"},
           Row{"a#7", 14, 4.5, "Tool0.Orientation.Value", "", "refused"},
           Row{"a#7", 14, 4.5, "Tool0.Station", "", "refused"},
           Row{"a#7a", 14, 4.5, "", "", ""},
           Row{"a#", 14, 4.5, "", "", ""},
           Row{"a7", 14, 4.5, "", "a7 is not allowed Toolid!", "a7 is not allowed Toolid!"},
           Row{"a#7#", 14, 4.5, "", "a#7# is not allowed Toolid!", "a#7# is not allowed Toolid!"},
       }) {
    SCOPED_TRACE(std::string(row.id) + " " + row.refused);
    tools->items.clear();
    operations->items.clear();
    add_tool(row.id, row.style, 1, 5)->parameter("LengthCompRegister", row.length);
    automation::set_decimal_sign(',');
    world.refused = {row.refused, "Operation1.ToolSettings"};
    const auto outcome = [&] {
      OperatingTimes times(view());
      return outcome_of([&] { WriteToolListRow(host::Tool(tools->items.front()), times); });
    };
    EXPECT_EQ(outcome(), row.row_without_operations);
    add_operation("a#7", 0.25);
    add_operation("", 0.125);
    EXPECT_EQ(outcome(), row.row);
  }
}

TEST_F(RowTest, TakesTheCodeOutOfANameOfTheKnowledgeBase) {
  struct Row {
    const char* text;
    const char* code;
    bool told;
  };
  for (const Row& row : {Row{"legiert {1105}", "1105", false}, Row{"{-1.5}{2}", "-1.5", false},
                         Row{"12} legiert", "12", false}, Row{"legiert {1105", "", true},
                         Row{"legiert", "", true}, Row{"", "", true}, Row{"}{", "", true},
                         Row{"{}", "", true}, Row{"ä{1105a}", "1105a", true}, Row{"{{1}", "{1", true}}) {
    messages.clear();
    EXPECT_EQ(ExtractMaterialCode(row.text), row.code) << row.text;
    EXPECT_EQ(messages.size(), row.told ? 1U : 0U) << row.text;
  }
  // A host that doesn't tell its language takes away the translation, not the message.
  world.refused = {"Application.Configuration"};
  messages.clear();
  ExtractMaterialCode("");
  EXPECT_EQ(messages, std::vector<std::string>{"not the right ZephaMaterialCode in the interfacefile!"});
}

TEST_F(RowTest, GivesMachineParametersInTheTypeOfTheirNumber) {
  document->members["Name"] = "D";
  const auto setup = document->child("MillSetup", "MillSetup");
  setup->members = {{"ProgramNumber", 7.5}, {"ProgramName", 12}};
  for (int i = 1; i <= 20; ++i) setup->members["CustomSetting" + std::to_string(i)] = i * 10;
  for (int i = 1; i <= 10; ++i) {
    setup->members["CustomSettingStr" + std::to_string(i)] = "s" + std::to_string(i);
  }
  setup->child("CustomMachineDefinition", "Definition")->members = {{"MachineOriginX", 1},
                                                                    {"MachineOriginZ", "z"}};
  document->child("MachineSetup", "MachineSetup")->child("Programs", "Programs")->add("P")->members = {
      {"Number", 1001}, {"Name", "OP10"}};
  struct Row {
    int kind;
    int number;
    Value::Kind type;
    const char* text;
    bool told;
  };
  using Kind = Value::Kind;
  for (const Row& row : {Row{1, 155, Kind::I4, "8", false},     Row{2, 155, Kind::I4, "1001", false},
                         Row{1, 462, Kind::Text, "12", false},  Row{2, 462, Kind::Text, "OP10", false},
                         Row{1, 328, Kind::Text, "D", false},   Row{1, 1581, Kind::Text, "D", false},
                         Row{1, 1560, Kind::Text, "D", false},  Row{1, 1561, Kind::R8, "10", false},
                         Row{1, 1580, Kind::R8, "200", false},  Row{1, 1590, Kind::Text, "D", false},
                         Row{1, 1591, Kind::Text, "s1", false}, Row{1, 1600, Kind::Text, "s10", false},
                         Row{1, 1601, Kind::Text, "D", false},  Row{1, 380, Kind::I4, "0", false},
                         Row{2, 385, Kind::R8, "0", false},     Row{1, 2505, Kind::R8, "1", false},
                         Row{1, 2507, Kind::Empty, "", true},   Row{2, 1561, Kind::Empty, "", true},
                         Row{0, 328, Kind::Empty, "", false},   Row{3, 155, Kind::Empty, "", false}}) {
    SCOPED_TRACE(std::to_string(row.kind) + " " + std::to_string(row.number));
    document->members["SetupKind"] = row.kind;
    messages.clear();
    const Value value = global::GetMachineSetupParameter(view(), row.number, 1);
    EXPECT_EQ(value.kind(), row.type);
    EXPECT_EQ(value.to_text(), row.text);
    EXPECT_EQ(messages.size(), row.told ? 1U : 0U);
  }
}

}  // namespace
}  // namespace mQuorvexList
