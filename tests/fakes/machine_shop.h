#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>

#include "fakes/fake_host.h"
#include "foundation/global.h"
#include "host/application.h"
#include "platform/temp_folder.h"

namespace fakes {

/// A document with two turrets (of three and two stations) and a mill setup of two stations, one tool on
/// turret 1, station 2, and a folder of models. The saved shift is (1, 2, 3); the shift starts as (7, 8, 9).
class MachineShop {
 public:
  MachineShop() {
    testing_support::set_variable("QVEspritUserModelsPath", models_.file("models"));
    std::filesystem::create_directories(models);
    application->child("Configuration", "Configuration")->members["Language"] = 0;
    application->members["MajorVersion"] = 19;
    application->members["Document"] = automation::Ref(document);
    document->members["MachineType"] = 1;
    document->members["UnitSystem"] = 71;
    turrets = document->child("MachineSetup", "MachineSetup")->child("Turrets", "Turrets");
    add_turret("Upper", 3);
    add_turret("Lower", 2);
    mill = document->child("MillSetup", "MillSetup");
    mill->members["SpindleSize"] = 40;
    mill_stations = mill->child("Stations", "MillStations");
    add_stations(*mill_stations, 2);
    tools = document->child("Tools", "Tools");
    tool = add_tool("Tool", "Turning#100");
    host::Application view{automation::Ref(application)};
    lent = view;
    global::lend_application(lent);
  }
  ~MachineShop() {
    global::take_application_back(lent);
    global::release_text_reader();
    testing_support::set_variable("QVEspritUserModelsPath", std::nullopt);
  }
  MachineShop(const MachineShop&) = delete;
  MachineShop& operator=(const MachineShop&) = delete;

  std::shared_ptr<Bag> add_tool(const std::string& bag_name, const std::string& tool_name) {
    auto bag = tools->add(bag_name);
    bag->members = {{"Name", tool_name}, {"Style", 16},       {"Turret", 1},      {"Station", 2},
                    {"ToolShiftX", 7.0}, {"ToolShiftY", 8.0}, {"ToolShiftZ", 9.0}};
    auto properties = bag->child("CustomProperties", bag_name + ".CustomProperties");
    properties->missing_is_nothing = true;
    double length = 1;
    for (const char* saved : {"ToolShiftXSave", "ToolShiftYSave", "ToolShiftZSave"}) {
      properties->parameter(saved, length++)->members["Type"] = host::type_double;
    }
    bag->parameter("LatheToolOrientation", 11);
    bag->parameter("Orientation", 2);
    bag->parameter("CustomSetting6", "11");
    bag->parameter("ToolShiftZ", 9.0);
    return bag;
  }
  std::shared_ptr<Bag> property(const std::string& name) {
    return std::static_pointer_cast<Bag>(tool->members["CustomProperties"].to_object())->named[name];
  }
  void record(const std::string& name, std::int32_t value) {
    const auto properties = std::static_pointer_cast<Bag>(tool->members["CustomProperties"].to_object());
    properties->parameter(name, value)->members["Type"] = host::type_long;
  }
  std::shared_ptr<Bag> part(std::int32_t turret, const char* which) {
    return std::static_pointer_cast<Bag>(
        turrets->items[static_cast<std::size_t>(turret - 1)]->members[which].to_object());
  }
  /// On a station of its turret by number, on none (0), or on one of the first turret (11 and up).
  void add_solid(std::int32_t turret, const std::string& name, std::int32_t station) {
    auto solid = part(turret, "Solids")->add("Solid");
    solid->members["Name"] = name;
    solid->members["Station"] =
        station == 0
            ? automation::Value(automation::nothing)
            : automation::Value(automation::Ref(part(station > 10 ? 1 : turret, "Stations")
                                                    ->items[static_cast<std::size_t>((station - 1) % 10)]));
  }
  /// "1:100.stl@Upper2 2:…": turret, model, station of each entry in their order.
  std::string solids() {
    std::ostringstream text;
    for (std::int32_t turret = 1; turret <= 2; ++turret) {
      for (const auto& solid : part(turret, "Solids")->items) {
        const automation::Ref station = solid->members["Station"].is(automation::Value::Kind::Object)
                                            ? solid->members["Station"].to_object()
                                            : nullptr;
        text << (text.tellp() > 0 ? " " : "") << turret << ':' << solid->members["Name"].to_text() << '@'
             << (station ? std::static_pointer_cast<Bag>(station)->name() : "none");
      }
    }
    return text.str();
  }
  void make_model(const std::string& file) const { std::ofstream(models / file) << "solid"; }
  [[nodiscard]] std::string shift() const {
    std::ostringstream text;
    text << tool->number("ToolShiftX") << ' ' << tool->number("ToolShiftY") << ' '
         << tool->number("ToolShiftZ");
    return text.str();
  }

  World world;
  testing_support::TempFolder models_;
  std::filesystem::path models = models_.file("models");
  std::shared_ptr<Bag> application = std::make_shared<Bag>(world, "Application");
  std::shared_ptr<Bag> document = std::make_shared<Bag>(world, "Document");
  std::shared_ptr<Bag> turrets, mill, mill_stations, tools, tool;
  host::Application lent;

 private:
  static void add_stations(Bag& stations, std::int32_t count, const std::string& stem = "Mill") {
    for (std::int32_t number = 1; number <= count; ++number) {
      stations.add(stem + std::to_string(number))->members = {{"Number", number},     {"ToolReference", 0},
                                                              {"RadialOffset", 10.0}, {"AxialOffset", 20.0},
                                                              {"TurretAngle", 0.0},   {"TiltAngle", 0.0}};
    }
  }
  void add_turret(const std::string& name, std::int32_t stations) {
    auto turret = turrets->add(name);
    turret->members["Name"] = name;
    add_stations(*turret->child("Stations", name + "Stations"), stations, name);
    turret->child("Solids", name + "Solids");
  }
};

}  // namespace fakes
