#include "deskhost/document/document_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "deskhost/console/show_document.h"
#include "tests/deskhost/model_test.h"

namespace deskhost {
namespace {

struct DocumentFile : testing::Test {
  DocumentFile() { std::filesystem::create_directories(folder); }
  ~DocumentFile() override { std::filesystem::remove_all(folder); }

  std::shared_ptr<Document> load(const std::string& text) {
    std::ofstream(file, std::ios::binary) << text;
    return load_document(file, desk);
  }
  std::string saved(const Document& document) {
    save_document(document, file);
    std::ostringstream content;
    content << std::ifstream(file, std::ios::binary).rdbuf();
    return content.str();
  }

  const std::filesystem::path folder =
      std::filesystem::path(testing::TempDir()) /
      (std::string("document_file_") + testing::UnitTest::GetInstance()->current_test_info()->name());
  const std::string file = (folder / "d.json").string();
  DeskRef desk = std::make_shared<Desk>();
};

constexpr const char* full = R"({ "Name": "Flansch Ø.esp", "MachineType": 1, "UnitSystem": 70,
  "MachineSetup": { "ProgramNumber": 4711, "Programs": [ { "Number": 1001, "Name": "OP10" } ],
    "CustomSettings": [ 1, 2.5 ], "CustomSettingStrs": [ "eins" ],
    "CustomMachineDefinition": { "MachineOriginZ": -0.0 },
    "Turrets": [ { "Name": "Upper", "Stations": [ { "Number": 11 }, { "ToolReference": 2, "TurretAngle": 1e-7 } ],
      "Solids": [ { "Name": "1.stl", "Station": 2 }, { "Name": "2.stl", "Station": 9 }, { "Name": "3.stl" } ] } ] },
  "MillSetup": null,
  "CustomProperties": [ { "Name": "KBM_StandardName", "Type": 8, "Value": "None" } ],
  "Tools": [ { "Class": 16, "Flag": true,
      "Parameters": { "toolnoseradius": 0.8, "ToolID": "Dreh \"ä\"#7", "ToolLength": 1e300, "Coolant": "x", "ToolDiameter": "12.50",
                      "ToolShiftX": 12345678901234567890, "ToolShiftY": -0.0, "ToolNumber": 3 },
      "Marked": [ "ToolMaterial" ], "CustomProperties": [ { "Name": "ToolShiftXSave", "Type": 5, "Value": 3 } ] },
    {} ],
  "Operations": [ { "ToolID": "Dreh \"ä\"#7", "Duration": 12.5 }, { "ToolID": null } ],
  "Simulation": { "SimTools": [ { "Name": "Dreh" } ],
    "SimSolids": [ { "Name": "1.stl", "Rotations": [ { "Point": [0,0,0], "Vector": [0,1,0], "Angle": 1.5707963267948966 } ] } ],
    "SimTurrets": [ { "Name": "Upper", "Origin": [0,0.1,0] } ] } })";

TEST_F(DocumentFile, SavesWhatItOpened) {
  const auto document = load(full);
  const std::string once = saved(*document);
  EXPECT_EQ(saved(*load(once)), once);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1)
      << "nothing else is left there";
  for (const char* part :
       {"\"Flansch Ø.esp\"", "\n  \"MillSetup\": null,", "\"MachineOriginZ\": -0.0\n",
        "\"TurretAngle\": 1e-07",
        "\"Parameters\": {\n        \"ToolStyle\": 16,\n        \"ToolID\": \"Dreh \\\"ä\\\"#7\",\n",
        "\"ToolNoseRadius\": 0.8", "\"ToolLength\": 1e+300", "\"ToolDiameter\": 12.5,",
        "\"ToolShiftY\": -0.0", "\"Value\": 3\n", "\"Station\": 9",
        "\"Marked\": [\n        \"ToolMaterial\"\n      ]", "\"Marked\": []", "\"ToolID\": null",
        "\"Angle\": 1.5707963267948966", "\"Number\": 2,\n            \"ToolReference\": 2"}) {
    EXPECT_NE(once.find(part), std::string::npos) << part;
  }
}

TEST_F(DocumentFile, GivesTheHostsObjects) {
  const auto document = load(full);
  auto& setup = *document->machine_setup;
  EXPECT_EQ(get(setup, "CustomSetting2").to_double(), 2.5);
  EXPECT_EQ(get(setup, "customsettingstr1").to_text(), "eins");
  for (const char* name : {"CustomSetting0", "CustomSetting21", "CustomSettingStr11", "CustomSetting01"}) {
    EXPECT_THROW(get(setup, Member::named(name)), Failure) << name;
  }
  EXPECT_TRUE(get(*document, "MillSetup").is(Value::Kind::Nothing));
  const auto turret = item(*setup.turrets, 1);
  const auto station = item(*get(*turret, "Stations").to_object(), 2);
  const auto solids = get(*turret, "Solids").to_object();
  EXPECT_EQ(get(*item(*solids, 1), "Station").to_object(), station);
  EXPECT_TRUE(get(*item(*solids, 3), "Station").is(Value::Kind::Nothing));
  const auto solid = std::dynamic_pointer_cast<DeskObject>(item(*solids, 2));
  EXPECT_EQ(solid->trace_name(), "Turret(1).Solid(2)");
  call(*solids, "Remove", {1});
  EXPECT_EQ(solid->trace_name(), "Turret(1).Solid(1)");
  EXPECT_EQ(std::dynamic_pointer_cast<DeskObject>(station)->trace_name(), "Turret(1).Station(2)");
  EXPECT_EQ(get(document->tools(), "Item", {2}).to_object()->get("Style", {}).to_int32(), 1);

  const auto point = make_point(), vector = make_vector();
  call(*point, "SetXYZ", {1, 2, 3});
  const auto& sim_solid = document->simulation().scene->solids->items[0];
  call(*sim_solid, "Rotate", {Value(point), Value(vector), 0.5});
  EXPECT_THROW(call(*sim_solid, "Rotate", {Value(vector), Value(point), 0.5}), Failure);
  ASSERT_EQ(sim_solid->rotations.size(), 2U);
  EXPECT_EQ(sim_solid->rotations[1].point, (Triple{1, 2, 3}));
}

TEST_F(DocumentFile, RefusesABadDocumentWithItsPlace) {
  struct Case {
    const char* text;
    const char* place;
  };
  const Case cases[] = {
      {"{ \"Name\": \"a\",\n \"Nam\": 1 }", ", line 2: Nam: unknown key"},
      {"{ \"Tools\": [] }", ": \"Name\" is missing"},
      {"[]", ": has to be an object"},
      {"", ", line 1, column 1: "},
      {"{ \"Name\": \"a\",\n  }", ", line 2, column 3: "},
      {"{ \"Name\": \"\xE4\" }", ", line 1, column "},
      {"{ \"Name\": \"a\",\n\"Name\":\n \"b\" }", ", line 2: Name: the key comes twice"},
      {"{ \"Name\": 1 }", ", line 1: Name: has to be a text"},
      {"{ \"Name\": \"a\", \"MachineType\": 1.5 }", ": MachineType: has to be a whole number"},
      {"{ \"Name\": \"a\", \"MachineType\": 4294967296 }", ": MachineType: has to be a whole number"},
      {"{ \"Name\": \"a\", \"Tools\": {} }", ": Tools: has to be an array"},
      {"{ \"Name\": \"a\", \"Tools\": [ {},\n { \"Class\": 26 } ] }", ", line 2: Tools[1].Class: "},
      {"{ \"Name\": \"a\", \"Tools\": [ {},\n {},\n 3\n ] }", ", line 3: Tools[2]: has to be an object"},
      {"{ \"Name\": \"a\", \"Tools\": [ { \"Parameters\": {\n \"ToolDiameter\": \"wide\" } } ] }",
       ", line 2: Tools[0].Parameters.ToolDiameter: \"wide\" can't stand here"},
      {"{ \"Name\": \"a\", \"Tools\": [ { \"Parameters\": { \"ToolLength\": null } } ] }",
       ": Tools[0].Parameters.ToolLength: has to be a number or a text"},
      {"{ \"Name\": \"a\", \"Tools\": [ { \"Parameters\": { \"InsertID\": \"i\" }, \"Class\": 1 } ] }",
       ": Tools[0].Parameters.InsertID: a tool of class 1"},
      {"{ \"Name\": \"a\", \"Tools\": [ { \"Parameters\": { \"ToolID\": \"i\", \"toolid\": \"j\" } } ] }",
       ": Tools[0].Parameters.toolid: the parameter comes twice"},
      {"{ \"Name\": \"a\", \"Tools\": [ { \"Marked\": [ \"ToolID\", \"X\" ] } ] }", ": Tools[0].Marked[1]: "},
      {"{ \"Name\": \"a\", \"CustomProperties\": [ { \"Name\": \"p\", \"Type\": 3, \"Value\": \"x\" } ] }",
       ": CustomProperties[0].Value: \"x\" can't stand here"},
      {"{ \"Name\": \"a\", \"CustomProperties\": [ { \"Type\": 3 } ] }",
       ": CustomProperties[0]: \"Name\" is missing"},
      {"{ \"Name\": \"a\", \"MillSetup\": { \"CustomSettings\": "
       "[1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,\n"
       "21] } }",
       ", line 2: MillSetup.CustomSettings[20]: is one too many"},
      {"{ \"Name\": \"a\", \"Simulation\": { \"SimTurrets\": [ { \"Origin\": [1,2] } ] } }",
       ": Simulation.SimTurrets[0].Origin: "},
      {"{ \"Name\": \"a\", \"MachineSetup\": { \"Turrets\": [ { \"Solids\": [ { \"Station\": 0 } ] } ] } }",
       ": MachineSetup.Turrets[0].Solids[0].Station: "},
  };
  for (const Case& each : cases) {
    try {
      load(each.text);
      ADD_FAILURE() << each.text;
    } catch (const DocumentFileError& error) {
      const std::string what = error.what();
      EXPECT_EQ(what.rfind(file, 0), 0U) << what;
      EXPECT_NE(what.find(each.place), std::string::npos) << what << "\nexpected " << each.place;
      EXPECT_FALSE(error.hint.empty()) << what;
    }
    EXPECT_EQ(desk->next_tool_number, 1) << each.text;
  }
}

TEST_F(DocumentFile, LeavesTheOldFileWhereItCantSave) {
  const auto document = load("{ \"Name\": \"old\" }");
  const std::string old = saved(*document);
  document->name = "\xE4";
  EXPECT_THROW(save_document(*document, file), DocumentFileError);
  EXPECT_EQ(saved(*load_document(file, desk)), old);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1);
  EXPECT_THROW(save_document(*document, (folder / "no" / "d.json").string()), DocumentFileError);
  EXPECT_THROW(load_document((folder / "no.json").string(), desk), DocumentFileError);
  EXPECT_THROW(load_document(folder.string(), desk), DocumentFileError);
}

TEST_F(DocumentFile, ShowsItInAlignedColumns) {
  const auto document = load(full);
  const std::string text = show_document(*document).text;
  for (const char* line :
       {"Document Flansch Ø.esp: turrets, inches, 2 tools, 2 operations\n",
        "  No  ToolID      Class  Turret  Station  Orientation  Unit  Diameter  Length  Radius  ",
        "   3  Dreh \"ä\"#7     16       -        -            -  -         12.5  1e+300     0.8  ",
        "   -                  1       -", "Mill setup: none\n", "  Turret 1      2       2          2",
        "       1        9  2.stl  no     no\n", "\nOn no station\n  ToolID ",
        "   1  Dreh \"ä\"#7  12.5  yes\n"}) {
    EXPECT_NE(text.find(line), std::string::npos) << line << "\nin\n" << text;
  }
}

}  // namespace
}  // namespace deskhost
