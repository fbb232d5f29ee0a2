#include "deskhost/check/shop.h"

#include <array>
#include <fstream>
#include <iterator>
#include <utility>
#include <vector>

#include "deskhost/check/shop_system.h"
#include "deskhost/system/file_path.h"
#include "deskhost/system/program.h"
#include "deskhost/system/registered_class.h"

namespace deskhost::check {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t field_count = 127;

using Fields = std::vector<std::pair<std::size_t, const char*>>;

std::string line_of(const Fields& fields) {
  std::vector<std::string> all(field_count);
  for (const auto& [index, text] : fields) all.at(index) = text;
  std::string line;
  for (std::size_t i = 0; i < all.size(); ++i) line += (i == 0 ? "" : ";") + all[i];
  return line + "\r\n";
}

// By place: style, class, id, number, unit, material, diameter, length, orientations, turret, station, shift,
// register, group.
std::string tools_of_shop() {
  return "FileVersion:\"2.0\"\r\n"
         "* tools of the check\r\n" +
         line_of({{0, "16"},
                  {1, "16"},
                  {2, "Turning#100"},
                  {3, "0"},
                  {4, "71"},
                  {5, "Carbide"},
                  {15, "2H"},
                  {23, "80"},
                  {41, "1"},
                  {84, "15"},
                  {86, "0.4"},
                  {88, "1"},
                  {89, "1"},
                  {90, "10"},
                  {91, "2"},
                  {92, "30"},
                  {93, "1"},
                  {101, "Turning"},
                  {102, "1"}}) +
         line_of({{0, "1"},
                  {1, "1"},
                  {2, "Mill D10#200"},
                  {3, "0"},
                  {4, "71"},
                  {5, "Carbide"},
                  {9, "4"},
                  {21, "10.0"},
                  {23, "72"},
                  {41, "3"},
                  {84, "1"},
                  {88, "2"},
                  {89, "2"},
                  {90, "1"},
                  {91, "2"},
                  {92, "120"},
                  {93, "0"},
                  {101, "Mills"},
                  {102, "0"}}) +
         line_of({{0, "18"},
                  {1, "18"},
                  {2, "Groove#300"},
                  {3, "12"},
                  {4, "71"},
                  {5, "Ceramic"},
                  {23, "60"},
                  {41, "1"},
                  {84, "11"},
                  {88, "1"},
                  {89, "2"},
                  {90, "5"},
                  {92, "25"},
                  {101, "Grooving"},
                  {102, "0"}});
}

constexpr const char* speeds_of_shop =
    "* speeds of the check\r\n"
    "DIN;Steel;soft;Roughing;Carbide;1.0503;C45;;METRIC;;180;;0.25;;;2;0.3;first\r\n"
    "DIN;Steel;soft;Finishing;100;1.0503;C45;;METRIC;;220;;0.1;;;0.5;0.1;second\r\n";

constexpr const char* turret_document = R"({ "Name": "Check.esp", "MachineType": 1, "SetupKind": 2,
 "MachineSetup": { "ProgramNumber": 7, "ProgramName": "P7", "Programs": [ { "Number": 1001, "Name": "OP10" } ],
  "Turrets": [
   { "Name": "Upper", "Kind": 1, "Stations": [
      { "Number": 1, "ToolReference": 2, "RadialOffset": 180, "AxialOffset": -35, "TurretAngle": 0.5 },
      { "Number": 2, "ToolReference": 1, "RadialOffset": 180, "AxialOffset": 60 } ],
     "Solids": [ { "Name": "999.stl", "Station": 2 }, { "Name": "300.stl", "Station": 2 } ] },
   { "Name": "Lower", "Kind": 1, "Stations": [ { "Number": 1 }, { "Number": 2, "ToolReference": 2 } ] } ] },
 "CustomProperties": [ { "Name": "KBM_StandardName", "Type": 8, "Value": "DIN" },
  { "Name": "KBM_PartMaterialConditionName", "Type": 8, "Value": "soft {1105}" } ],
 "Tools": [ { "Class": 16, "Parameters": { "ToolStyle": 16, "ToolID": "Old turning#100", "ToolNumber": 1,
    "TurretID": 1, "StationID": 1, "LatheToolOrientation": 16, "Orientation": 1, "CustomSetting6": "15",
    "LengthCompRegister": 1 },
   "CustomProperties": [ { "Name": "OldLatheToolOrientation", "Type": 3, "Value": 15 },
    { "Name": "ToolShiftXSave", "Type": 5, "Value": 4.5 }, { "Name": "ToolShiftYSave", "Type": 5, "Value": 1 },
    { "Name": "ToolShiftZSave", "Type": 5, "Value": 2 } ] },
  { "Class": 1, "Parameters": { "ToolStyle": 1, "ToolID": "Old mill#101", "ToolNumber": 3, "TurretID": 2,
    "StationID": 1, "LatheToolOrientation": 1, "Orientation": 1, "LengthCompRegister": 3 } } ],
 "Operations": [ { "ToolID": "Old turning#100", "Duration": 12.5 },
  { "ToolID": "Old mill#101", "Duration": 3 }, { "ToolID": "Old turning#100", "Duration": 2.25 } ],
 "Simulation": { "SimTools": [ { "Name": "Old turning#100" }, { "Name": "Old mill#101" } ],
  "SimSolids": [ { "Name": "100.stl" }, { "Name": "other.stl" } ],
  "SimTurrets": [ { "Name": "Upper", "Origin": [300, 0, 450] } ] } })";

constexpr const char* mill_document = R"({ "Name": "Plate.esp", "MachineType": 2, "SetupKind": 1,
 "UnitSystem": 71, "MillSetup": { "ProgramNumber": 8, "ProgramName": "P8", "SpindleSize": 40,
  "Stations": [ { "Number": 1, "ToolReference": 2, "AxialOffset": 12 }, { "Number": 2, "ToolReference": 1 } ] },
 "CustomProperties": [ { "Name": "KBM_StandardName", "Type": 8, "Value": "None" } ],
 "Tools": [ { "Class": 1, "Parameters": { "ToolStyle": 1, "ToolID": "Old mill#200", "ToolNumber": 1,
    "StationID": 1, "Orientation": 1, "LengthCompRegister": 1 } },
  { "Class": 1, "Parameters": { "ToolStyle": 1, "ToolID": "Spare#201", "ToolNumber": 2, "StationID": 2,
    "Orientation": 1, "LengthCompRegister": 2 } } ],
 "Operations": [ { "ToolID": "Old mill#200", "Duration": 5.5 } ] })";

constexpr const char* small_document = R"({ "Name": "After.esp", "MachineType": 1, "SetupKind": 2,
 "MachineSetup": { "Turrets": [ { "Name": "Upper", "Kind": 1, "Stations": [ { "Number": 1, "ToolReference": 2 } ] } ] },
 "Tools": [ { "Class": 16, "Parameters": { "ToolStyle": 16, "ToolID": "Turning#100", "ToolNumber": 1,
  "TurretID": 1, "StationID": 1, "LatheToolOrientation": 16, "Orientation": 1 } } ] })";

struct Variable {
  const char* name;
  const char* place;  // below the shop's folder
};
constexpr std::array<Variable, 4> variables{{
    {"QVEspritInstallPath", "programs/"},
    {"QVEspritExportPath", "exchange"},
    {"QVMakeListPath", "exchange"},
    {"QVEspritUserModelsPath", "models"},
}};

void replace(const fs::path& from, const fs::path& to) {
  fs::remove(to);  // a library may take any two files of a drive for the same one
  fs::copy_file(from, to);
}

}  // namespace

// The component takes its settings from where it was loaded.
Shop::Shop(const Place& place)
    : folder_(place.folder),
      component_name_(place.component.filename()),
      is_registered_(place.is_registered) {
  const fs::path home = fs::absolute(place.component).parent_path();
  for (const char* const below : {"addin", "programs", "exchange", "models"}) {
    fs::create_directories(folder_ / below);
  }
  be_found_at(fs::absolute(place.component), folder_ / "addin" / component_name_);
  if (fs::exists(home / "Bitmaps")) be_found_at(home / "Bitmaps", folder_ / "addin/Bitmaps");
  for (const auto& entry : fs::directory_iterator(home)) {
    if (entry.path().extension() == ".txt")
      fs::copy_file(entry.path(), folder_ / "addin" / entry.path().filename());
  }
  if (is_registered_) register_here(connect_class, folder_ / "addin" / component_name_);
  write("turret.json", turret_document);
  write("mill.json", mill_document);
  write("small.json", small_document);
  set_variable("QVESPRIT_DECIMAL", ".");
  have_own_registry(folder_ / registry_file);
  reset();
}

Shop::~Shop() {
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

void Shop::reset() {
  for (const auto& [name, below] : variables) set_variable(name, file(below));
  full_disk_.reset();
  for (const char* const gone : {export_file, list_file, "ran", registry_file, "addin/QVEsprit.cfg"}) {
    fs::remove_all(folder_ / gone);
  }
  take_up_registry();
  for (const char* const ending : {"-wal", "-shm"}) fs::remove_all(path(knowledge_base_file) += ending);
  if (fs::exists(path("kept.db"))) replace(path("kept.db"), path(knowledge_base_file));
  fs::create_directories(folder_ / "models");
  write("models/100.stl", "solid 100\nendsolid\n");
  write("programs/tools.csv", tools_of_shop());
  fs::remove_all(folder_ / speeds_file);
  write(speeds_file, speeds_of_shop);
  program(exporter, "copy '" + file("programs/tools.csv") + "' '" + file(export_file) + "'");
  program(list_maker, "make '" + file("ran") + "'");
}

void Shop::write(const std::string& name, std::string_view bytes) const {
  std::ofstream(path(name), std::ios::binary) << bytes;
}

std::string Shop::file(const std::string& name) const {
  return name_of(path(name));
}

std::string Shop::component() const {
  return is_registered_ ? "" : name_of(folder_ / "addin" / component_name_);
}

std::string Shop::read(const std::string& name) const {
  std::ifstream in(folder_ / name, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

void Shop::settings(const std::string& text) const {
  write("addin/QVEsprit.cfg", "[Default]\r\n" + text);
}

void Shop::program(const std::string& name, const std::string& script) const {
  make_program(path(name), script);
}

void Shop::take_up_registry() const {
  refill_own_registry(path(registry_file));
}

void Shop::fill_disk() {
  full_disk_ = refuse_writes(path(list_file));
}

void Shop::keep_knowledge_base() const {
  replace(path(knowledge_base_file), path("kept.db"));
}

void Shop::forget_knowledge_base() const {
  for (const char* const ending : {"", "-wal", "-shm"}) fs::remove(path(knowledge_base_file) += ending);
}

}  // namespace deskhost::check
