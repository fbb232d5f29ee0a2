#include "deskhost/document/document_writer.h"

#include <concepts>
#include <ostream>

#include "deskhost/document/json_writer.h"

namespace deskhost {

using automation::Value;

namespace {

void put(JsonWriter& json, std::string_view key, const std::string& value) {
  json.key(key);
  json.text(value);
}
void put(JsonWriter& json, std::string_view key, std::int32_t value) {
  json.key(key);
  json.whole(value);
}
void put(JsonWriter& json, std::string_view key, double value) {
  json.key(key);
  json.number(value);
}
// A template, so that no pointer or number slips into it.
template <std::same_as<bool> B>
void put(JsonWriter& json, std::string_view key, B value) {
  json.key(key);
  json.boolean(value);
}
void put(JsonWriter& json, std::string_view key, const Value& value) {
  if (value.is(Value::Kind::R8)) return put(json, key, value.to_double());
  if (value.is(Value::Kind::I4)) return put(json, key, value.to_int32());
  put(json, key, *value.text());
}
void put(JsonWriter& json, std::string_view key, const Triple& value) {
  json.key(key);
  json.open_array();
  for (const double coordinate : value) json.number(coordinate);
  json.close();
}

/// An array of objects: `write` writes the members of one.
template <class Items, class Write>
void put_all(JsonWriter& json, std::string_view key, const Items& items, Write write) {
  json.key(key);
  json.open_array();
  for (const auto& item : items) {
    json.open_object();
    write(*item);
    json.close();
  }
  json.close();
}

void put_properties(JsonWriter& json, const CustomProperties* properties) {
  static const std::vector<std::shared_ptr<CustomProperty>> none;
  put_all(json, "CustomProperties", properties ? properties->all() : none,
          [&](const CustomProperty& property) {
            put(json, "Name", property.name());
            put(json, "Type", property.type());
            put(json, "Value", property.value());
          });
}

void put_tool(JsonWriter& json, const Tool& tool) {
  put(json, "Class", tool.tool_class());
  put(json, "Flag", tool.flag());
  json.key("Parameters");
  json.open_object();
  for (const catalogue::Index parameter : catalogue::parameters_of(tool.tool_class())) {
    const Value& value = tool.value(parameter);
    if (!value.is(Value::Kind::Empty)) put(json, catalogue::parameters()[parameter].name, value);
  }
  json.close();
  json.key("Marked");
  json.open_array();
  for (const catalogue::Index parameter : catalogue::parameters_of(tool.tool_class())) {
    if (tool.marked(parameter)) json.text(catalogue::parameters()[parameter].name);
  }
  json.close();
  put_properties(json, tool.existing_custom_properties());
}

void put_stations(JsonWriter& json, const Stations& stations) {
  put_all(json, "Stations", stations.items, [&](const Station& station) {
    put(json, "Number", station.number);
    put(json, "ToolReference", station.tool_reference);
    put(json, "RadialOffset", station.radial_offset);
    put(json, "AxialOffset", station.axial_offset);
    put(json, "TurretAngle", station.turret_angle);
    put(json, "TiltAngle", station.tilt_angle);
  });
}

void put_turret(JsonWriter& json, const Turret& turret) {
  put(json, "Name", turret.name);
  put(json, "Kind", turret.kind);
  put_stations(json, *turret.stations);
  put_all(json, "Solids", turret.solids->items, [&](const SolidModel& solid) {
    put(json, "Name", solid.name);
    put(json, "ModelPath", solid.model_path);
    put(json, "Color", solid.color);
    put(json, "Shown", solid.shown);
    put(json, "Unmounted", solid.unmounted);
    json.key("Station");
    if (solid.station_place == 0) {
      json.null();
    } else {
      json.whole(solid.station_place);
    }
  });
}

void put_settings(JsonWriter& json, const Setup& setup) {
  json.key("CustomSettings");
  json.open_array();
  for (const double setting : setup.custom_settings) json.number(setting);
  json.close();
  json.key("CustomSettingStrs");
  json.open_array();
  for (const std::string& setting : setup.custom_setting_texts) json.text(setting);
  json.close();
  json.key("CustomMachineDefinition");
  json.open_object();
  put(json, "MachineOriginX", setup.definition->origin[0]);
  put(json, "MachineOriginY", setup.definition->origin[1]);
  put(json, "MachineOriginZ", setup.definition->origin[2]);
  json.close();
}

void put_machine_setup(JsonWriter& json, const MachineSetup* setup) {
  json.key("MachineSetup");
  if (setup == nullptr) return json.null();
  json.open_object();
  put(json, "ProgramNumber", setup->program_number);
  put(json, "ProgramName", setup->program_name);
  put_all(json, "Programs", setup->programs->items, [&](const Program& program) {
    put(json, "Number", program.number);
    put(json, "Name", program.name);
  });
  put_settings(json, *setup);
  put_all(json, "Turrets", setup->turrets->items, [&](const Turret& turret) { put_turret(json, turret); });
  json.close();
}

void put_mill_setup(JsonWriter& json, const MillSetup* setup) {
  json.key("MillSetup");
  if (setup == nullptr) return json.null();
  json.open_object();
  put(json, "ProgramNumber", setup->program_number);
  put(json, "ProgramName", setup->program_name);
  put(json, "SpindleSize", setup->spindle_size);
  put_stations(json, *setup->stations);
  put_settings(json, *setup);
  json.close();
}

void put_scene(JsonWriter& json, const Scene& scene) {
  json.key("Simulation");
  json.open_object();
  put_all(json, "SimTools", scene.tools->items, [&](const SimTool& tool) { put(json, "Name", tool.name); });
  put_all(json, "SimSolids", scene.solids->items, [&](const SimSolid& solid) {
    put(json, "Name", solid.name);
    json.key("Rotations");
    json.open_array();
    for (const SimSolid::Rotation& rotation : solid.rotations) {
      json.open_object();
      put(json, "Point", rotation.point);
      put(json, "Vector", rotation.vector);
      put(json, "Angle", rotation.angle);
      json.close();
    }
    json.close();
  });
  put_all(json, "SimTurrets", scene.turrets->items, [&](const SimTurret& turret) {
    put(json, "Name", turret.name);
    put(json, "Origin", turret.origin);
  });
  json.close();
}

}  // namespace

void write_document(const Document& document, std::ostream& out) {
  JsonWriter json(out);
  json.open_object();
  put(json, "Name", document.name);
  put(json, "MachineType", document.machine_type);
  put(json, "SetupKind", document.setup_kind);
  put(json, "UnitSystem", document.unit_system);
  put_machine_setup(json, document.machine_setup.get());
  put_mill_setup(json, document.mill_setup.get());
  put_properties(json, &document.custom_properties());
  put_all(json, "Tools", document.tools().all(), [&](const Tool& tool) { put_tool(json, tool); });
  put_all(json, "Operations", document.operations().items, [&](const Operation& operation) {
    json.key("ToolID");
    if (operation.tool_id) {
      json.text(*operation.tool_id);
    } else {
      json.null();
    }
    put(json, "Duration", operation.duration);
  });
  put_scene(json, *document.simulation().scene);
  json.close();
  out << '\n';
}

}  // namespace deskhost
