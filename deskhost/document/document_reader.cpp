#include "deskhost/document/document_reader.h"

#include "deskhost/document/json_fields.h"

namespace deskhost {

using automation::Failure;
using automation::Value;

namespace {

/// A value that its parameter or property converts: a number or a text.
Value loose_value(const Place& place) {
  const Json& json = place.json();
  if (json.is_string()) return json.get_ref<const std::string&>();
  if (!json.is_number())
    place.refuse("has to be a number or a text", "write a number, or a text between quotation marks");
  const double number = json.get<double>();
  // As a whole number, -0.0 would lose its sign.
  if (json.is_number_integer() && number >= INT32_MIN && number <= INT32_MAX) {
    return static_cast<std::int32_t>(number);
  }
  return number;
}

void read_custom_properties(const Place& array, CustomProperties& properties) {
  constexpr const char* types = "the types are 3 (whole number of 32 bits), 5 (decimal number) and 8 (text)";
  array.each([&](const Place& item) {
    std::string name;
    std::int32_t type = type_string;
    Value value;
    const auto add = [&](const Place& place) {
      if (properties.find(name)) place.refuse("\"" + name + "\" comes twice", "a name comes once");
      if (type != type_long && type != type_double && type != type_string)
        place.refuse("there is no type " + std::to_string(type), types);
      try {
        properties.add(name, type, value);
      } catch (const Failure&) {
        place.refuse(place.json().dump() + " can't stand here: it has to be " +
                         std::string(type == type_long ? "a whole number of 32 bits" : "a decimal number"),
                     types);
      }
    };
    bool is_added = false;
    read_fields(
        item, {field("Name", name, Field::required), field("Type", type), {"Value", [&](const Place& place) {
                                                                             value = loose_value(place);
                                                                             add(place);
                                                                             is_added = true;
                                                                           }}});
    if (!is_added) add(item);
  });
}

catalogue::Index parameter_of(const Tool& tool, std::string_view name, const Place& place) {
  const auto parameter = catalogue::find(name);
  if (!parameter) place.refuse("there is no such parameter", "check its spelling");
  if (!catalogue::slot_of(tool.tool_class(), *parameter)) {
    place.refuse("a tool of class " + std::to_string(tool.tool_class()) + " doesn't have this parameter",
                 "leave it out, or give the tool another class");
  }
  return *parameter;
}

void read_parameters(const Place& object, Tool& tool) {
  if (!object.json().is_object())
    object.refuse("has to be an object", "write the parameters between { and }");
  std::bitset<catalogue::max_parameters> seen;
  for (const auto& [name, json] : object.json().get_ref<const Json::object_t&>()) {
    const Place place(object, name, json);
    const catalogue::Index parameter = parameter_of(tool, name, place);
    if (seen[parameter]) place.refuse("the parameter comes twice", "leave one out");
    seen.set(parameter);
    const Value value = loose_value(place);
    try {
      tool.write_quietly(parameter, value);
    } catch (const Failure&) {
      const catalogue::Kind kind = catalogue::parameters()[parameter].kind;
      place.refuse(json.dump() + " can't stand here: it has to be " + std::string(catalogue::wanted(kind)),
                   std::string(catalogue::hint(kind)));
    }
  }
}

void read_tool(const Place& item, Document& document, Desk& desk) {
  std::int32_t tool_class = 1;
  if (item.json().is_object()) {
    const auto found = item.json().find("Class");
    if (found != item.json().end()) {
      const Place place(item, "Class", *found);
      tool_class = place.whole();
      if (!catalogue::is_tool_class(tool_class))
        place.refuse("there is no such tool class", "the classes are 1 to 25");
    }
  }
  const auto tool = Tool::make(desk, tool_class);
  read_fields(item, {field("Class", tool_class),
                     {"Flag", [&](const Place& place) { tool->set_flag(place.boolean()); }},
                     {"Parameters", [&](const Place& place) { read_parameters(place, *tool); }},
                     {"Marked",
                      [&](const Place& place) {
                        place.each([&](const Place& name) {
                          tool->mark(parameter_of(*tool, name.text(), name), true);
                        });
                      }},
                     {"CustomProperties", [&](const Place& place) {
                        read_custom_properties(place, tool->custom_properties());
                      }}});
  document.tools().append(tool);
}

void read_stations(const Place& array, int turret, Stations& stations) {
  array.each([&](const Place& item) {
    const auto station = std::make_shared<Station>(turret, static_cast<int>(item.index()) + 1);
    read_fields(item,
                {field("Number", station->number), field("ToolReference", station->tool_reference),
                 field("RadialOffset", station->radial_offset), field("AxialOffset", station->axial_offset),
                 field("TurretAngle", station->turret_angle), field("TiltAngle", station->tilt_angle)});
    stations.items.push_back(station);
  });
}

void read_solid(const Place& item, const Turret& turret) {
  const auto solid = turret.solids->add();
  const auto stand_at = [&](const Place& place) {
    if (place.is_null()) return;
    solid->station_place = place.whole();
    if (solid->station_place < 1)
      place.refuse("there is no such station", "stations count from 1; null is none");
    const auto& stations = turret.stations->items;
    const auto station = static_cast<std::size_t>(solid->station_place);
    if (station <= stations.size()) solid->station = stations[station - 1];
  };
  read_fields(item, {field("Name", solid->name),
                     field("ModelPath", solid->model_path),
                     field("Color", solid->color),
                     field("Shown", solid->shown),
                     field("Unmounted", solid->unmounted),
                     {"Station", stand_at}});
}

void read_turret(const Place& item, MachineSetup& setup) {
  const auto turret = std::make_shared<Turret>(static_cast<int>(item.index()) + 1);
  setup.turrets->items.push_back(turret);
  read_fields(
      item,
      {field("Name", turret->name),
       field("Kind", turret->kind),
       {"Stations", [&](const Place& p) { read_stations(p, turret->number, *turret->stations); }},
       {"Solids", [&](const Place& p) { p.each([&](const Place& solid) { read_solid(solid, *turret); }); }}});
}

// The fields that both setups have.
Field settings_field(Setup& setup) {
  return {"CustomSettings", [&setup](const Place& array) {
            auto& settings = setup.custom_settings;
            array.each(settings.size(), [&](const Place& item) { settings[item.index()] = item.number(); });
          }};
}
Field setting_texts_field(Setup& setup) {
  return {"CustomSettingStrs", [&setup](const Place& array) {
            auto& texts = setup.custom_setting_texts;
            array.each(texts.size(), [&](const Place& item) { texts[item.index()] = item.text(); });
          }};
}
Field definition_field(Setup& setup) {
  return {"CustomMachineDefinition", [&setup](const Place& object) {
            auto& origin = setup.definition->origin;
            read_fields(object, {field("MachineOriginX", origin[0]), field("MachineOriginY", origin[1]),
                                 field("MachineOriginZ", origin[2])});
          }};
}

void read_program(const Place& item, MachineSetup& setup) {
  const auto program = std::make_shared<Program>(static_cast<int>(item.index()) + 1);
  read_fields(item, {field("Number", program->number), field("Name", program->name)});
  setup.programs->items.push_back(program);
}

void read_machine_setup(const Place& object, Document& document) {
  if (object.is_null()) return document.machine_setup.reset();
  MachineSetup& setup = *document.machine_setup;
  read_fields(
      object,
      {field("ProgramNumber", setup.program_number),
       field("ProgramName", setup.program_name),
       {"Programs", [&](const Place& p) { p.each([&](const Place& item) { read_program(item, setup); }); }},
       settings_field(setup),
       setting_texts_field(setup),
       definition_field(setup),
       {"Turrets", [&](const Place& p) { p.each([&](const Place& item) { read_turret(item, setup); }); }}});
}

void read_mill_setup(const Place& object, Document& document) {
  if (object.is_null()) return document.mill_setup.reset();
  MillSetup& setup = *document.mill_setup;
  read_fields(object, {field("ProgramNumber", setup.program_number),
                       field("ProgramName", setup.program_name),
                       field("SpindleSize", setup.spindle_size),
                       {"Stations", [&](const Place& p) { read_stations(p, 0, *setup.stations); }},
                       settings_field(setup),
                       setting_texts_field(setup),
                       definition_field(setup)});
}

void read_operation(const Place& item, Operations& operations) {
  std::optional<std::string> tool_id;
  double duration = 0;
  read_fields(item, {{"ToolID",
                      [&](const Place& place) {
                        if (!place.is_null()) tool_id = place.text();
                      }},
                     field("Duration", duration)});
  operations.append(std::move(tool_id), duration);
}

Field triple_field(std::string_view key, Triple& target) {
  return {key, [&target](const Place& array) {
            array.each(target.size(), [&](const Place& item) { target[item.index()] = item.number(); });
            if (array.json().size() < target.size())
              array.refuse("has to have three numbers", "write [x, y, z]");
          }};
}

void read_rotation(const Place& item, std::vector<SimSolid::Rotation>& rotations) {
  SimSolid::Rotation rotation{};
  read_fields(item, {triple_field("Point", rotation.point), triple_field("Vector", rotation.vector),
                     field("Angle", rotation.angle)});
  rotations.push_back(rotation);
}

void read_sim_solid(const Place& item, Scene& scene) {
  std::string name;
  std::vector<SimSolid::Rotation> rotations;
  read_fields(item, {field("Name", name), {"Rotations", [&](const Place& p) {
                                             p.each([&](const Place& rotation) {
                                               read_rotation(rotation, rotations);
                                             });
                                           }}});
  const auto solid = std::make_shared<SimSolid>(static_cast<int>(item.index()) + 1, std::move(name));
  solid->rotations = std::move(rotations);
  scene.solids->items.push_back(solid);
}

void read_simulation(const Place& object, Scene& scene) {
  const auto read_tool_name = [&](const Place& item) {
    std::string name;
    read_fields(item, {field("Name", name)});
    scene.tools->items.push_back(
        std::make_shared<SimTool>(static_cast<int>(item.index()) + 1, std::move(name)));
  };
  const auto read_turret_place = [&](const Place& item) {
    std::string name;
    Triple origin{};
    read_fields(item, {field("Name", name), triple_field("Origin", origin)});
    scene.turrets->items.push_back(
        std::make_shared<SimTurret>(static_cast<int>(item.index()) + 1, std::move(name), origin));
  };
  read_fields(object, {{"SimTools", [&](const Place& p) { p.each(read_tool_name); }},
                       {"SimSolids",
                        [&](const Place& p) { p.each([&](const Place& i) { read_sim_solid(i, scene); }); }},
                       {"SimTurrets", [&](const Place& p) { p.each(read_turret_place); }}});
}

}  // namespace

std::shared_ptr<Document> read_document(const Json& json, const DeskRef& desk) {
  const Place root(json);
  auto made = std::make_shared<Document>(desk, std::string());
  Document& document = *made;
  read_fields(
      root,
      {field("Name", document.name, Field::required),
       field("MachineType", document.machine_type),
       field("SetupKind", document.setup_kind),
       field("UnitSystem", document.unit_system),
       {"MachineSetup", [&](const Place& p) { read_machine_setup(p, document); }},
       {"MillSetup", [&](const Place& p) { read_mill_setup(p, document); }},
       {"CustomProperties", [&](const Place& p) { read_custom_properties(p, document.custom_properties()); }},
       {"Tools",
        [&](const Place& p) { p.each([&](const Place& item) { read_tool(item, document, *desk); }); }},
       {"Operations",
        [&](const Place& p) {
          p.each([&](const Place& item) { read_operation(item, document.operations()); });
        }},
       {"Simulation", [&](const Place& p) { read_simulation(p, *document.simulation().scene); }}});
  return made;
}

}  // namespace deskhost
