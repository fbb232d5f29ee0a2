#include "component/connect_object.h"
#include "deskhost/session.h"
#include "toollist/export_fixture.h"
#include "toollist/mQuorvexList.h"

namespace mQuorvexList {
namespace {

using nlohmann::json;
const std::filesystem::path cases = "tests/toollist/cases";

json document_of(const std::string& name) {
  return json::parse(bytes_of(cases / name / "document.json"));
}

TEST_F(ExportTest, WritesTheListsThatWereWorkedOutByHand) {
  setenv("QVEspritUserModelsPath", folder.c_str(), 1);
  for (const auto& entry : std::filesystem::directory_iterator(cases)) {
    for (const auto& [sign, expected] :
         {std::pair(".", "expected.tls"), std::pair(",", "expected-comma.tls")}) {
      if (!std::filesystem::exists(entry.path() / expected)) continue;
      SCOPED_TRACE(entry.path().filename().string() + ", " + expected);
      std::filesystem::remove(settings_file);
      if (std::filesystem::exists(entry.path() / "QVEsprit.cfg")) {
        std::filesystem::copy_file(entry.path() / "QVEsprit.cfg", settings_file);
      }
      setenv("QVESPRIT_DECIMAL", sign, 1);
      deskhost::SessionOptions options;
      options.make_addin = component::make_connect_object;
      options.on_failure = [](std::string_view event, std::string_view text) {
        ADD_FAILURE() << event << ": " << text;
      };
      deskhost::Session session(options);
      session.connect();
      session.open((entry.path() / "document.json").string());
      messages.clear();
      session.command(2);
      EXPECT_EQ(list(), bytes_of(entry.path() / expected));
      EXPECT_EQ(bytes_of(folder / "QVEspritList.tls.taken"), list());
      std::string shown;
      for (const std::string& message : messages) shown += message + "\n";
      EXPECT_EQ(shown, bytes_of(entry.path() / "messages.txt"));
      session.take_down();
    }
  }
  unsetenv("QVESPRIT_DECIMAL");
}

// What the test of the standard's name decides: with a code everything is skipped to the end, without one
// only what follows the first operation of the operation road.
TEST_F(ExportTest, HandsOnAMissingListMakerOnlyWhereNothingIsSkipped) {
  struct Row {
    const char* document;
    const char* standard;
    bool operations;
    bool handed_on;
  };
  for (const Row& row :
       {Row{"turret_by_station", "None", true, true}, Row{"turret_by_station", "DIN", true, false},
        Row{"mill_by_operation", "None", true, false}, Row{"mill_by_operation", "None", false, true},
        Row{"mill_by_operation", "DIN", false, false}}) {
    SCOPED_TRACE(std::string(row.document) + " " + row.standard);
    json document = document_of(row.document);
    document["CustomProperties"][0]["Value"] = row.standard;
    document["Tools"] = json::array();
    if (!row.operations) document["Operations"] = json::array();
    const json_host::Host host(document);
    lend(host);
    std::filesystem::remove(folder / "QVMakeList.exe");
    messages.clear();
    EXPECT_EQ(failure_of(ExportToolList), row.handed_on ? "File not found" : "");
    // The reader of texts drops the blank at the default's end.
    EXPECT_EQ(messages, std::vector<std::string>{"the following file/folder does not exist:" +
                                                 folder.string() + "/QVMakeList.exe "});
    EXPECT_TRUE(list().ends_with("Tools:\r\n"));
  }
}

TEST_F(ExportTest, EndsAtOnceOnAFailureBeforeTheMaterialLine) {
  const json_host::Host host(document_of("mill_by_operation"));
  lend(host);
  for (const char* number : {"12a", "", "99999999999"}) {
    write(settings_file, std::string("[Default]\nToolListsNCP=") + number + "\n");
    EXPECT_NE(failure_of(ExportToolList), "") << number;
    EXPECT_FALSE(std::filesystem::exists(folder / "QVEspritList.tls")) << number;
  }
  std::filesystem::remove(settings_file);
  std::filesystem::create_symlink("/dev/full", folder / "QVEspritList.tls");
  EXPECT_EQ(failure_of(ExportToolList), "Disk full");
  setenv("QVMakeListPath", (folder / "missing").c_str(), 1);
  EXPECT_EQ(failure_of(ExportToolList), "Path not found");
  EXPECT_FALSE(list_maker_ran());
  EXPECT_TRUE(messages.empty());
}

TEST_F(ExportTest, TellsTheUserOfEachVariableWithoutAValue) {
  unsetenv("QVEspritInstallPath");
  const json_host::Host host(document_of("mill_by_operation"));
  lend(host);
  ExportToolList();
  const std::string not_set = "Enviorementvariable :QVEspritInstallPath not set!";
  EXPECT_EQ(messages,
            (std::vector<std::string>{not_set, not_set,
                                      "the following file/folder does not exist:QVMakeList.exe ", not_set}));
}

TEST_F(ExportTest, LeavesOutTheMaterialLineWhoseNameCantBeRead) {
  json document = document_of("turret_by_station");
  document["CustomProperties"].erase(1);
  const json_host::Host host(document);
  lend(host);
  ExportToolList();
  EXPECT_NE(list().find("ToolListsDescript:\"OP10 Flansch vorn\"\r\nMachineName:"), std::string::npos);
}

TEST_F(ExportTest, DeletesAndWritesByTheSettingsOfTheDocumentRoad) {
  struct Row {
    const char* settings;
    const char* standard;
    bool answers;  // the host tells whether a tool is used
    const char* rows;
    std::vector<std::string> left;
    const char* failure;
  };
  const std::vector<std::string> both{"Used#1", "Not used#2"};
  const std::string used = "1;;0;0;;0;5;0;1\r\n";
  const std::string not_used = "2;;0;0;;0;0;0;1\r\n";
  const std::string all = used + not_used;
  const char* const refusal = "Object doesn't support this property or method";
  for (const Row& row : {
           Row{"", "None", true, used.c_str(), {"Used#1"}, ""},
           Row{"ExportUnusedTools=0", "None", true, used.c_str(), {"Used#1"}, ""},
           Row{"DeleteUnusedTools=0", "None", true, all.c_str(), both, ""},
           Row{"DeleteUnusedTools=0\nExportUnusedTools= 0", "None", true, used.c_str(), both, ""},
           // Not asked at all; handed on; skipped, so that what the test guards runs.
           Row{"DeleteUnusedTools=0", "None", false, all.c_str(), both, ""},
           Row{"", "None", false, "", both, refusal},
           Row{"", "DIN", false, "", {}, ""},
           Row{"DeleteUnusedTools=0\nExportUnusedTools=0", "DIN", false, all.c_str(), both, ""},
       }) {
    SCOPED_TRACE(std::string(row.settings) + " " + row.standard);
    json document{{"Name", "d"}, {"MachineType", 3}, {"SetupKind", 1}};
    document["CustomProperties"] = {{{"Name", "KBM_StandardName"}, {"Value", row.standard}},
                                    {{"Name", "KBM_PartMaterialConditionName"}, {"Value", "{1}"}}};
    document["Operations"] = {{{"ToolID", "Used#1"}, {"Duration", 5}}};
    for (const std::string& name : both) {
      document["Tools"].push_back({{"Parameters",
                                    {{"ToolID", name},
                                     {"ToolStyle", 1},
                                     {"ToolNumber", 0},
                                     {"TurretID", 0},
                                     {"StationID", 0},
                                     {"LengthCompRegister", 0},
                                     {"Orientation", 1}}}});
    }
    const json_host::Host host(document);
    if (!row.answers) host.document->members.erase("IsToolUsed");
    lend(host);
    write(settings_file, std::string("[Default]\nToolOutputorderByMillOperation=0\n") + row.settings + "\n");
    EXPECT_EQ(failure_of(ExportToolList), row.failure);
    messages.clear();  // of a mill setup that tells nothing
    EXPECT_EQ(list().substr(list().find("Tools:") + 8), row.rows);
    std::vector<std::string> left;
    for (const auto& tool : *host.tools) left.push_back(*tool->members["Name"]({}).text());
    EXPECT_EQ(left, row.left);
  }
}

}  // namespace
}  // namespace mQuorvexList
