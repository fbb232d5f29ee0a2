#include <algorithm>
#include <random>

#include "foundation/machine_parameters.h"
#include "toollist/export_fixture.h"
#include "toollist/material_code.h"
#include "toollist/roads.h"
#include "toollist/tool_row.h"

namespace mQuorvexList {
namespace {

using automation::Failure;
using automation::Value;
using json_host::Node;
using nlohmann::json;

// The walks as they are told, one host call after the other, without anything kept.
double walked_time(const host::Document& document, const host::Tool& tool) {
  double sum = 0;
  for (const host::Operation& operation : document.Operations().all()) {
    if (passes([&] {
          return equal(operation.ToolSettings().Item("ToolID").Value(),
                       tool.ToolParameters().Item("ToolID").Value());
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
        if (!skipping.test([&] { return Place{tool.Turret(), tool.Station()} == Place{i, j}; })) continue;
        OperatingTimes times(document);
        skipping.statement([&] { WriteToolListRow(tool, times); });
      }
    }
  }
}

class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}
  int below(int end) { return std::uniform_int_distribution<int>(0, end - 1)(engine_); }
  bool once_in(int n) { return below(n) == 0; }
  /// Ids that clash: texts, numbers, the empty text.
  json id() {
    const json ids[] = {"A#1", "B#2", "C#3x", "D", "A#1", "", 0, 2, nullptr};
    return ids[below(9)];
  }

 private:
  std::mt19937 engine_;
};

// A document with some refusals in it; members that are taken out are refused for good.
json_host::Host random_host(Random& random) {
  json document;
  for (int i = random.below(9); i > 0; --i) {
    document["Operations"].push_back({{"ToolID", random.id()}, {"Duration", random.below(1000) / 7.0}});
  }
  for (int i = random.below(7); i > 0; --i) {
    const json id = random.id();
    document["Tools"].push_back({{"Parameters",
                                  {{"ToolID", id.is_string() ? id : "E#5"},
                                   {"ToolStyle", 10 + random.below(16)},
                                   {"ToolNumber", i},
                                   {"TurretID", random.below(3)},
                                   {"StationID", random.below(4)},
                                   {"LengthCompRegister", i},
                                   {"Orientation", 1},
                                   {"LatheToolOrientation", 2}}}});
  }
  document["MachineSetup"]["Turrets"] = {{{"Stations", {json::object(), json::object()}}},
                                         {{"Stations", {json::object(), json::object(), json::object()}}}};
  json_host::Host host(document);
  for (const auto& operation : host.operations) {
    if (random.once_in(6)) operation->members.erase("Duration");
  }
  for (const auto& tool : *host.tools) {
    for (const char* member : {"Name", "Turret", "Station", "Number", "Item", "Style"}) {
      if (random.once_in(25)) tool->members.erase(member);
    }
  }
  return host;
}

struct Outcome {
  std::string list;
  std::string failure;
  std::vector<std::string> messages;
  bool operator==(const Outcome&) const = default;
};

class WalksTest : public ExportTest {
 protected:
  template <class Road>
  Outcome outcome_of(Road&& road) {
    messages.clear();
    list_file().open((folder / "QVEspritList.tls").string());
    const std::string failure = failure_of(road);
    list_file().close();
    return {list(), failure, messages};
  }
};

TEST_F(WalksTest, GiveWhatIsKeptForThem) {
  for (unsigned seed = 0; seed < 150; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Random random(seed);
    const json_host::Host host = random_host(random);
    lend(host);
    const host::Document document(host.document);
    const bool skips = random.once_in(2);

    OperatingTimes times(document);
    for (const auto& tool : *host.tools) {
      EXPECT_EQ(times.of(host::Tool(tool)), walked_time(document, host::Tool(tool)));
    }
    const auto with_skipping = [&](auto road) {
      Skipping skipping;
      if (skips) skipping.begin();
      road(skipping);
    };
    OperatingTimes kept(document);
    EXPECT_EQ(
        outcome_of(
            [&] { with_skipping([&](Skipping& skipping) { operation_road(document, kept, skipping); }); }),
        outcome_of([&] { with_skipping([&](Skipping& skipping) { walk_operations(document, skipping); }); }));
    EXPECT_EQ(
        outcome_of(
            [&] { with_skipping([&](Skipping& skipping) { station_road(document, kept, skipping); }); }),
        outcome_of([&] { with_skipping([&](Skipping& skipping) { walk_stations(document, skipping); }); }));
    if (HasFailure()) return;
  }
}

TEST_F(WalksTest, CountARefusalOfTheOperationsAsTheWalkWould) {
  json_host::Host host(json::parse(bytes_of("tests/toollist/cases/mill_by_operation/document.json")));
  lend(host);
  const host::Document document(host.document);
  OperatingTimes times(document);
  const auto operations = host.document->members.at("Operations");
  host.document->members.erase("Operations");
  EXPECT_THROW(times.of(host::Tool(host.tools->front())), Failure);
  Skipping skipping;
  EXPECT_THROW(operation_road(document, times, skipping), Failure);
  host.document->members["Operations"] = operations;
  EXPECT_EQ(times.of(host::Tool(host.tools->front())), 64.2);
}

TEST_F(WalksTest, WritesARowOfNineFieldsOrNone) {
  json operations = {{{"ToolID", "a#7"}, {"Duration", 0.25}}, {{"ToolID", nullptr}, {"Duration", 0.125}}};
  struct Row {
    json changes;  // null takes the parameter away
    const char* row;
    const char* row_without_operations;
    const char* message = "";
  };
  const char* const refusal = "Object doesn't support this property or method";
  for (const Row& row : {
           Row{{}, "7;;3;4,5;;1;0.38;5;2\r\n", "7;;3;4,5;;1;0;5;2\r\n"},
           Row{{{"ToolStyle", 15}}, "7;;3;4,5;;1;0.38;5;9\r\n", "7;;3;4,5;;1;0;5;9\r\n"},
           Row{{{"ToolStyle", 25}, {"LengthCompRegister", "D1;x"}},
               "7;;3;D1;x;;1;0.38;5;2\r\n",
               "7;;3;D1;x;;1;0;5;2\r\n"},
           Row{{{"ToolID", "b# 007.50"}}, " 007.50;;3;4,5;;1;0.12;5;2\r\n", " 007.50;;3;4,5;;1;0;5;2\r\n"},
           Row{{{"Orientation", nullptr}}, "", refusal},
           Row{{{"StationID", nullptr}}, "", refusal},
           Row{{{"ToolID", "a#7a"}}, "", ""},
           Row{{{"ToolID", "a#"}}, "", ""},
           Row{{{"ToolID", "a7"}}, "", "", "a7 is not allowed Toolid!"},
           Row{{{"ToolID", "a#7#"}}, "", "", "a#7# is not allowed Toolid!"},
       }) {
    SCOPED_TRACE(row.changes.dump());
    json parameters{{"ToolID", "a#7"},  {"ToolStyle", 14},          {"ToolNumber", 3},
                    {"TurretID", 1},    {"StationID", 5},           {"LengthCompRegister", 4.5},
                    {"Orientation", 2}, {"LatheToolOrientation", 9}};
    if (!row.changes.is_null()) parameters.merge_patch(row.changes);
    for (const bool with_operations : {true, false}) {
      json document{{"Tools", {{{"Parameters", parameters}}}}};
      if (with_operations) document["Operations"] = operations;
      const json_host::Host host(document);
      lend(host);
      automation::set_decimal_sign(',');
      OperatingTimes times((host::Document(host.document)));
      const Outcome outcome = outcome_of([&] { WriteToolListRow(host::Tool(host.tools->front()), times); });
      EXPECT_EQ(outcome.list + outcome.failure, with_operations ? row.row : row.row_without_operations);
      EXPECT_EQ(outcome.messages.empty() ? "" : outcome.messages.front(), row.message);
    }
  }
}

TEST_F(ExportTest, TakesTheCodeOutOfANameOfTheKnowledgeBase) {
  struct Row {
    const char* text;
    const char* code;
    bool told;
  };
  const json_host::Host host(json::object());
  lend(host);
  for (const Row& row : {Row{"legiert {1105}", "1105", false}, Row{"{-1.5}{2}", "-1.5", false},
                         Row{"12} legiert", "12", false}, Row{"legiert {1105", "", true},
                         Row{"legiert", "", true}, Row{"", "", true}, Row{"}{", "", true},
                         Row{"{}", "", true}, Row{"ä{1105a}", "1105a", true}, Row{"{{1}", "{1", true}}) {
    messages.clear();
    EXPECT_EQ(ExtractMaterialCode(row.text), row.code) << row.text;
    EXPECT_EQ(messages.size(), row.told ? 1U : 0U) << row.text;
  }
  // A host that doesn't tell its language takes away the translation, not the message.
  host.application->members.erase("Configuration");
  messages.clear();
  ExtractMaterialCode("");
  EXPECT_EQ(messages, std::vector<std::string>{"not the right ZephaMaterialCode in the interfacefile!"});
}

TEST_F(ExportTest, GivesMachineParametersInTheTypeOfTheirNumber) {
  json setup{{"ProgramNumber", 7.5}, {"ProgramName", 12}};
  for (int i = 1; i <= 20; ++i) setup["CustomSettings"].push_back(i * 10);
  for (int i = 1; i <= 10; ++i) setup["CustomSettingStrs"].push_back("s" + std::to_string(i));
  setup["CustomMachineDefinition"] = {{"MachineOriginX", 1}, {"MachineOriginY", 2}, {"MachineOriginZ", "z"}};
  json machine{{"Programs", {{{"Number", 1001}, {"Name", "OP10"}}}}, {"ProgramNumber", 1}};
  const json document{{"Name", "D"}, {"MillSetup", setup}, {"MachineSetup", machine}};
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
    json of_kind = document;
    of_kind["SetupKind"] = row.kind;
    const json_host::Host host(of_kind);
    messages.clear();
    const Value value = global::GetMachineSetupParameter(host::Document(host.document), row.number, 1);
    EXPECT_EQ(value.kind(), row.type);
    EXPECT_EQ(value.to_text(), row.text);
    EXPECT_EQ(messages.size(), row.told ? 1U : 0U);
  }
}

}  // namespace
}  // namespace mQuorvexList
