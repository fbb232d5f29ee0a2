#include <filesystem>

#include "end_to_end/desk.h"

namespace mQuorvexList {
namespace {

using nlohmann::json;
namespace fs = std::filesystem;

/// The command in the desk host, with a list maker that keeps a copy of what it was given.
class ExportTest : public end_to_end::Desk {
 protected:
  ExportTest() { program("QVMakeList.exe", "copy\t%1\t%1.taken"); }

  /// The failure that the command hands back, empty for none.
  std::string export_of(const json& document, char decimal_sign = '.') {
    start();
    open(document);
    const auto changed = testing_support::with_decimal_sign(decimal_sign);
    messages.clear();
    session->command(2);
    return failures.empty() ? "" : failures.front().substr(failures.front().find(": ") + 2);
  }
  static json document_of(const std::string& name) {
    return json::parse(std::ifstream(fs::path("tests/toollist/cases") / name / "document.json"));
  }
  [[nodiscard]] std::string list() const { return folder.read("QVEspritList.tls"); }
  [[nodiscard]] std::string rows() const { return list().substr(list().find("Tools:") + 8); }
  [[nodiscard]] bool exists(const char* name) const { return fs::exists(folder.file(name)); }
};

TEST_F(ExportTest, WritesTheListsThatWereWorkedOutByHand) {
  const auto read = [](const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  };
  for (const auto& entry : fs::directory_iterator("tests/toollist/cases")) {
    for (const auto& [sign, expected] :
         {std::pair('.', "expected.tls"), std::pair(',', "expected-comma.tls")}) {
      if (!fs::exists(entry.path() / expected)) continue;
      SCOPED_TRACE(entry.path().filename().string() + ", " + expected);
      settings(read(entry.path() / "settings.txt"));
      EXPECT_EQ(export_of(document_of(entry.path().filename().string()), sign), "");
      EXPECT_EQ(list(), read(entry.path() / expected));
      EXPECT_EQ(folder.read("QVEspritList.tls.taken"), list());
      std::string shown;
      for (const std::string& message : messages) shown += message + "\n";
      EXPECT_EQ(shown, read(entry.path() / "messages.txt"));
    }
  }
}

// What the test of the standard's name decides: with a code everything is skipped to the end, without one
// only what follows the first operation of the operation road.
TEST_F(ExportTest, HandsOnAMissingListMakerOnlyWhereNothingIsSkipped) {
  fs::remove(folder.file("QVMakeList.exe"));
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
    EXPECT_EQ(export_of(document), row.handed_on ? "File not found" : "");
    // The reader of texts drops the blank at the default's end.
    EXPECT_EQ(messages,
              std::vector{"the following file/folder does not exist:" + folder.file("QVMakeList.exe ")});
    EXPECT_TRUE(list().ends_with("Tools:\r\n"));
  }
}

TEST_F(ExportTest, EndsAtOnceOnAFailureBeforeTheMaterialLine) {
  const json document = document_of("mill_by_operation");
  for (const auto& [number, failure] :
       {std::pair("12a", "Type mismatch"), std::pair("155.5", "Type mismatch"),
        std::pair("", "Type mismatch"), std::pair("99999999999", "Overflow")}) {
    settings(std::string("ToolListsNCP=") + number + "\n");
    EXPECT_EQ(export_of(document), failure) << number;
    EXPECT_FALSE(exists("QVEspritList.tls")) << number;
  }
  settings("");
  if (!testing_support::on_windows) {  // which has no disk that is full at will
    fs::create_symlink("/dev/full", folder.file("QVEspritList.tls"));
    EXPECT_EQ(export_of(document), "Disk full");
  }
  const testing_support::WithVariable missing("QVMakeListPath", folder.file("missing"));
  EXPECT_EQ(export_of(document), "Path not found");
  EXPECT_FALSE(exists("QVEspritList.tls.taken"));
  EXPECT_TRUE(messages.empty());
}

TEST_F(ExportTest, TellsTheUserOfEachVariableWithoutAValue) {
  const testing_support::WithVariable unset("QVEspritInstallPath", "");
  EXPECT_EQ(export_of(document_of("mill_by_operation")), "");
  const std::string not_set = "Enviorementvariable :QVEspritInstallPath not set!";
  EXPECT_EQ(messages,
            (std::vector{not_set, not_set,
                         std::string("the following file/folder does not exist:QVMakeList.exe "), not_set}));
}

TEST_F(ExportTest, LeavesOutTheMaterialLineWhoseNameCantBeRead) {
  json document = document_of("turret_by_station");
  document["CustomProperties"].erase(1);
  EXPECT_EQ(export_of(document), "");
  EXPECT_NE(list().find("ToolListsDescript:\"OP10 Flansch vorn\"\r\nMachineName:"), std::string::npos);
}

TEST_F(ExportTest, DeletesAndWritesByTheSettingsOfTheDocumentRoad) {
  struct Row {
    const char* settings;
    const char* standard;
    bool answers;  // the host tells whether a tool is used
    std::string rows;
    std::vector<std::string> left;
    const char* failure = "";
  };
  const std::vector<std::string> both{"Used#1", "Not used#2"};
  const std::vector<std::string> one{"Used#1"};
  const std::string used = "1;;0;0;;1;5;1;1\r\n";
  const std::string all = used + "2;;0;0;;1;0;1;1\r\n";
  for (const Row& row : {
           Row{"", "None", true, used, one},
           Row{"ExportUnusedTools=0", "None", true, used, one},
           Row{"DeleteUnusedTools=0", "None", true, all, both},
           Row{"DeleteUnusedTools=0\nExportUnusedTools= 0", "None", true, used, both},
           // Not asked at all; handed on; skipped, so that what the test guards runs.
           Row{"DeleteUnusedTools=0", "None", false, all, both},
           Row{"", "None", false, "", both, "refused"},
           Row{"", "DIN", false, "", {}},
           Row{"DeleteUnusedTools=0\nExportUnusedTools=0", "DIN", false, all, both},
       }) {
    SCOPED_TRACE(std::string(row.settings) + " " + row.standard);
    json document = document_of("mill_by_operation");
    document["CustomProperties"][0]["Value"] = row.standard;
    document["Operations"] = {{{"ToolID", "Used#1"}, {"Duration", 5}}};
    document["Tools"].clear();
    for (const std::string& name : both) {
      document["Tools"].push_back({{"Class", 11},
                                   {"Parameters",
                                    {{"ToolID", name},
                                     {"ToolStyle", 11},
                                     {"ToolNumber", 0},
                                     {"TurretID", 1},
                                     {"StationID", 1},
                                     {"LengthCompRegister", 0},
                                     {"Orientation", 1}}}});
    }
    refused.clear();
    if (!row.answers) refused = {"Document.IsToolUsed"};
    settings(std::string("ToolOutputorderByMillOperation=0\n") + row.settings + "\n");
    EXPECT_EQ(export_of(document), row.failure);
    EXPECT_EQ(rows(), row.rows);
    EXPECT_EQ(tool_ids(), row.left);
  }
}

}  // namespace
}  // namespace mQuorvexList
