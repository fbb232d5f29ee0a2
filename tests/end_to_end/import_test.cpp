
#include "automation/number.h"
#include "end_to_end/desk.h"
#include "foundation/global.h"
#include "platform/text.h"

namespace end_to_end {
namespace {

using Json = nlohmann::json;
using Ids = std::vector<std::string>;

const Json turret_document = {
    {"Name", "Shaft.esp"},
    {"MachineSetup", {{"Turrets", {{{"Name", "Upper"}, {"Stations", {{{"Number", 1}}, {{"Number", 2}}}}}}}}}};

std::string mill(const std::string& id, const std::vector<std::pair<std::size_t, std::string>>& more = {}) {
  std::vector<std::pair<std::size_t, std::string>> fields{{0, "1"}, {1, "1"}, {2, id}, {3, "0"}};
  fields.insert(fields.end(), more.begin(), more.end());
  return export_line(fields);
}

std::string bytes_of(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<std::string> split(const std::string& text, char at) {
  std::vector<std::string> pieces;
  std::istringstream in(text);
  for (std::string piece; std::getline(in, piece, at);) pieces.push_back(piece);
  if (text.ends_with(at)) pieces.emplace_back();
  return pieces;
}

/// The example shop: its own heading line names the fields, so what is expected of the import comes from the
/// file and not from the import's tables.
struct ShopFile {
  ShopFile() {
    for (std::string line : split(bytes_of("examples/shop/shop-tools.csv"), '\n')) {
      if (line.ends_with('\r')) line.pop_back();
      if (line.starts_with("* ToolStyle;")) names = split(line.substr(2), ';');
      if (line.find_first_not_of(' ') == line.npos || line[line.find_first_not_of(' ')] == '*') continue;
      if (line.find("FileVersion:") == std::string::npos) tools.push_back(split(line, ';'));
    }
  }
  std::vector<std::string> names;
  std::vector<std::vector<std::string>> tools;
};

// Fields with a rule of their own, checked one by one below.
bool has_own_rule(const std::string& name) {
  for (const char* own : {"ToolClass",       "ToolID",
                          "ToolNumber",      "ToolMaterial",
                          "OrientationCode", "TaperAngle",
                          "Orientation",     "LatheToolOrientation",
                          "TurretID",        "StationID",
                          "ToolShiftX",      "ToolShiftY",
                          "ToolShiftZ",      "LengthCompRegister",
                          "ZTCMovement",     "YTCMovement",
                          "XTCMovement",     "ToolGroup",
                          "UserModelFlag",   "HolderDimensionA",
                          "HolderDimensionD"}) {
    if (name == own) return true;
  }
  return name.starts_with("reserved");
}

TEST_F(Desk, ImportsEveryParameterThatAToolsClassHas) {
  const ShopFile shop;
  ASSERT_EQ(shop.names.size(), 127U);
  ASSERT_EQ(shop.tools.size(), 83U);
  folder.write("to-export.csv", bytes_of("examples/shop/shop-tools.csv"));
  exporter_hands_out("to-export.csv");
  start();
  session->open("examples/shop/turret.json");
  import();
  EXPECT_EQ(failures, Ids{});
  ASSERT_EQ(tool_ids().size(), 83U);
  std::size_t compared = 0;
  for (const std::vector<std::string>& line : shop.tools) {
    const std::string id = platform::from_code_page(line[2]);
    const host::ToolParameters parameters = tool(id).ToolParameters();
    for (std::size_t i = 0; i < shop.names.size(); ++i) {
      if (has_own_rule(shop.names[i])) continue;
      const std::string given = platform::from_code_page(line[i]);
      automation::Value stands;
      try {
        stands = parameters.Item(shop.names[i]).Value();
      } catch (const automation::Failure&) {
        continue;  // not a parameter of this class
      }
      ++compared;
      const auto number = automation::read_number(given);
      const bool same = stands.text() != nullptr || !number ? stands.to_text() == given
                                                            : std::abs(stands.to_double() - *number) < 1e-12;
      EXPECT_TRUE(same) << id << ' ' << shop.names[i] << ": " << given << " became " << stands.to_text();
    }
  }
  EXPECT_GT(compared, 83U * 50U);
}

TEST_F(Desk, WritesParametersInTheirOrder) {
  const ShopFile shop;
  exporter_writes({mill("a#1", {{93, "7"}})});
  start();
  open(turret_document);
  import();
  std::vector<std::string> expected{"ToolStyle",
                                    "ToolID",
                                    "ToolNumber",
                                    "TurretID",
                                    "StationID",
                                    "LengthCompRegister",
                                    "LatheToolOrientation",
                                    "Orientation"};
  for (std::size_t i = 4; i < shop.names.size(); ++i) {
    const std::string& name = shop.names[i];
    if (name.starts_with("reserved") || name == "Orientation" || name == "TurretID" || name == "StationID" ||
        name == "ToolGroup" || name == "UserModelFlag") {
      continue;
    }
    expected.push_back(name == "OrientationCode" ? "CustomSetting6" : name);
    if (name == "ThreadPerUnit") expected.emplace_back("Flag");
  }
  std::vector<std::string> written;
  for (const Json& call : trace()) {
    const std::string on = call["on"];
    if (!on.starts_with("Tool(1)") || on.find("CustomProperties") != on.npos ||
        written.size() == expected.size()) {
      continue;
    }
    if (call["member"] == "Item") written.push_back(call["args"][0]);
    if (call["member"] == "Flag") written.emplace_back("Flag");
  }
  EXPECT_EQ(written, expected);
}

TEST_F(Desk, GivesNewToolsTheirPlace) {
  Json document = turret_document;
  for (const int number : {1, 2, 4}) {
    document["Tools"].push_back(
        {{"Parameters", {{"ToolID", "old#" + std::to_string(number)}, {"ToolNumber", number}}}});
  }
  struct Case {
    std::vector<std::pair<std::size_t, std::string>> fields;
    std::vector<std::pair<std::string, std::string>> expected;
  };
  const std::vector<Case> cases{
      {{}, {{"ToolNumber", "3"}, {"StationID", "3"}, {"LengthCompRegister", "3"}, {"TurretID", "1"}}},
      {{{3, "0.0"}, {88, "2"}, {89, "5"}}, {{"ToolNumber", "3"}, {"TurretID", "2"}, {"StationID", "5"}}},
      {{{3, "2"}, {93, "0"}}, {{"ToolNumber", "2"}, {"LengthCompRegister", "0"}}},
      {{{3, "998"}}, {{"LengthCompRegister", "998"}}},
      {{{3, "999"}}, {{"LengthCompRegister", ""}, {"StationID", "999"}}},
      {{{3, "T5"}, {89, "0"}}, {{"ToolNumber", ""}, {"LengthCompRegister", ""}, {"StationID", ""}}},
      {{{88, "x"}}, {{"TurretID", ""}}},
      {{{15, "3H"}, {84, "12"}}, {{"LatheToolOrientation", "17"}, {"CustomSetting6", "12"}}},
      {{{15, "3h"}}, {{"LatheToolOrientation", ""}}},
      {{{15, "0"}, {84, "12"}}, {{"LatheToolOrientation", "12"}}},
      {{{15, "7"}}, {{"LatheToolOrientation", "7"}, {"Orientation", "4"}, {"ZTCMovement", "6"}}},
      {{{41, "0"}, {94, "2"}, {95, " "}}, {{"Orientation", "4"}, {"ZTCMovement", "2"}, {"YTCMovement", "1"}}},
      {{{29, ""}}, {{"TaperAngle", "0"}}},
  };
  settings("Orientation=4\r\nZTCMovement = \"6\"\r\n");
  for (const Case& c : cases) {
    exporter_writes({mill("new#9", c.fields)});
    start();
    open(document);
    import();
    for (const auto& [parameter, expected] : c.expected) {
      EXPECT_EQ(value("new#9", parameter), expected) << parameter << " of " << mill("new#9", c.fields);
    }
  }
  // A first turret of kind 5, and a mill, take the station from the settings.
  settings("StationID=8\r\n");
  exporter_writes({mill("new#9", {{3, "6"}})});
  Json own_stations = turret_document;
  own_stations["MachineSetup"]["Turrets"][0]["Kind"] = 5;
  for (const Json& machine : {own_stations, Json{{"Name", "m"}, {"MachineType", 2}}}) {
    start();
    open(machine);
    import();
    EXPECT_EQ(value("new#9", "StationID"), "8");
  }
  // A host that calls its classes otherwise.
  for (const auto& [name, tools] : {std::pair{"Mill.ToolFactory", 4U}, std::pair{"Mill.Nobody", 3U}}) {
    settings("[Host]\r\nToolFactory=" + std::string(name) + "\r\n");
    start();
    open(document);
    import();
    EXPECT_EQ(tool_ids().size(), tools) << name;
  }
}

TEST_F(Desk, ChangesAToolThatTheDocumentHasInPlace) {
  exporter_writes({mill("D10#77", {{3, "5"}, {21, "10"}, {88, "2"}}),
                   mill("D10 new#77", {{3, "9"}, {21, "12"}, {15, "A"}}), "  ", "* comment",
                   "FileVersion:\"9\"", mill("D10 new#78", {{1, "5"}})});
  start();
  open(turret_document);
  import();
  EXPECT_EQ(tool_ids(), (Ids{"D10 new#77", "D10 new#78"}))
      << "what stands in front of the # makes no other tool";
  EXPECT_EQ(value("D10 new#77", "ToolDiameter"), "12");
  EXPECT_EQ(value("D10 new#77", "ToolNumber"), "5");
  EXPECT_EQ(value("D10 new#77", "TurretID"), "2");
  EXPECT_EQ(value("D10 new#77", "LatheToolOrientation"), "23");
  EXPECT_EQ(document().Tools().Item("D10 new#78").ToolParameters().Kind(), 5);

  folder.write("models/77.stl", "solid");
  exporter_writes({mill("D10 new#77", {{48, "3"}, {51, "4"}})});
  import();
  EXPECT_EQ(value("D10 new#77", "HolderDimensionA"), "0") << "the model shows the holder";
  EXPECT_EQ(value("D10 new#77", "HolderDimensionD"), "0");
  EXPECT_EQ(messages, Ids{});
}

TEST_F(Desk, TellsWhatIsWrongWithTheExporterAndItsFile) {
  const std::string path = folder.file("").substr(0, folder.file("").size() - 1) + "\\QV-Esprit-Export.csv";
  const std::string half = mill("h#3").substr(0, 40);
  struct Case {
    const char* what;
    std::string script;
    std::string message;
    Ids tools;
  };
  const std::string copy = "copy\t" + folder.file("lines") + "\t" + folder.file("QV-Esprit-Export.csv");
  folder.write("lines", mill("a#1") + "\r\n" + mill("b#2") + "\r\n" + half);
  for (const Case& c : {Case{"half a line", copy, " wrong Format!" + path, {"a#1", "b#2"}},
                        Case{"writes nothing", "exit\t0", "File not found " + path, {}},
                        Case{"fails", "exit\t3", "File not found " + path, {}},
                        Case{"is killed", "die", "File not found " + path, {}}}) {
    exporter_runs(c.script);
    folder.write("QV-Esprit-Export.csv", mill("stale#1") + "\r\n");
    start();
    open(turret_document);
    import();
    EXPECT_EQ(messages, Ids{c.message}) << c.what;
    EXPECT_EQ(tool_ids(), c.tools) << c.what;
    EXPECT_EQ(failures, Ids{}) << c.what;
    EXPECT_FALSE(global::ToolImportRunning()) << c.what;
  }
  exporter_writes({half});
  start();
  open(turret_document);
  const auto languages = [&] {
    return std::ranges::count_if(trace(),
                                 [](const auto& line) { return line.value("member", "") == "Language"; });
  };
  const auto before = languages();
  import();
  EXPECT_EQ(messages, Ids{" wrong Format!" + path}) << "on the first line";
  EXPECT_EQ(languages() - before, 3) << "once for each folder and once for the message";
  start();
  open(turret_document);
  std::filesystem::remove(folder.file("QV-ToolExport.exe"));
  import();
  EXPECT_EQ(messages, Ids{"File not found " + path}) << "no exporter: the message still names the file";
  session->close();
  messages.clear();
  import();
  EXPECT_EQ(messages, Ids{"Object variable not set "}) << "no document, and no path yet";
}

TEST_F(Desk, HandsOnOnlyWhatFindsOrMakesATool) {
  struct Case {
    const char* what;
    std::string line;
    std::string failure;
  };
  for (const Case& c : {Case{"class that is no number", export_line({{1, "x"}, {2, "c#3"}}), "Type mismatch"},
                        Case{"empty identity", export_line({{1, "1"}}), "Subscript out of range"}}) {
    exporter_writes({mill("a#1"), c.line, mill("d#4")});
    start();
    open(turret_document);
    import();
    EXPECT_EQ(failures, Ids{"OnCommand: " + c.failure}) << c.what;
    EXPECT_EQ(tool_ids(), Ids{"a#1"}) << c.what;
    EXPECT_FALSE(global::ToolImportRunning()) << c.what;
    exporter_writes({mill("d#4")});
    import();
    EXPECT_EQ(tool_ids(), (Ids{"a#1", "d#4"})) << c.what << ": the next run is a normal one";
  }
}

TEST_F(Desk, DropsARefusedStepAndGoesOn) {
  exporter_writes({mill("a#1", {{21, "10"}, {22, "9"}})});
  start();
  open(turret_document);
  import();
  const auto put_of = [](const std::string& on) {
    return [on](const Json& call) { return call["op"] == "put" && call["on"] == on; };
  };
  for (const auto& [on, parameter] :
       {std::pair<std::string, std::string>{"Tool(1).ToolDiameter", "ToolDiameter"},
        {"Tool(1).TurretID", "TurretID"}}) {
    start();
    open(turret_document);
    import();
    const std::uint64_t refused = call_number(put_of(on));
    ASSERT_NE(refused, 0U);
    start(refused);
    open(turret_document);
    import();
    EXPECT_EQ(value("a#1", parameter), "");
    EXPECT_EQ(value("a#1", "ControlDiameter"), "9");
    EXPECT_EQ(messages, Ids{});
    EXPECT_EQ(failures, Ids{});
  }
  // The tool can't be put into the document: its line is lost, the run is not.
  const std::uint64_t add = call_number([](const Json& call) {
    return call["op"] == "call" && call["member"] == "Add" && call["on"] == "Tools";
  });
  exporter_writes({mill("a#1"), mill("b#2")});
  start(add);
  open(turret_document);
  import();
  EXPECT_EQ(tool_ids(), Ids{"b#2"});
  EXPECT_EQ(failures, Ids{});
}

TEST_F(Desk, TellsOfAVariableEachTimeItIsNeeded) {
  exporter_writes({mill("a#1")});
  start();
  open(turret_document);
  testing_support::set_variable("QVEspritExportPath", std::nullopt);
  import();
  ASSERT_EQ(messages.size(), 2U);
  EXPECT_EQ(messages[0], "Enviorementvariable :QVEspritExportPath not set!");
  EXPECT_EQ(messages[1], "File not found \\QV-Esprit-Export.csv");
}

}  // namespace
}  // namespace end_to_end
