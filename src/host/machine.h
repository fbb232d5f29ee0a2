#pragma once

#include "host/facade.h"

namespace host {

/// A place for a tool on a turret or in a magazine. Lengths in document units, angles in radians.
class Station : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] std::int32_t Number() const { return get("Number").to_int32(); }
  [[nodiscard]] std::int32_t ToolReference() const { return get("ToolReference").to_int32(); }
  void ToolReference(std::int32_t reference) const { put("ToolReference", reference); }
  [[nodiscard]] double RadialOffset() const { return get("RadialOffset").to_double(); }
  [[nodiscard]] double AxialOffset() const { return get("AxialOffset").to_double(); }
  [[nodiscard]] double TurretAngle() const { return get("TurretAngle").to_double(); }
  [[nodiscard]] double TiltAngle() const { return get("TiltAngle").to_double(); }
};

using Stations = Collection<Station>;

/// The entry of a user model on a turret.
class SolidModel : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] std::string Name() const { return get("Name").to_text(); }
  void Name(std::string_view name) const { put("Name", name); }
  void ModelPath(std::string_view path) const { put("ModelPath", path); }
  /// red + 256 * green + 65536 * blue
  void Color(std::int32_t color) const { put("Color", color); }
  void Shown(bool shown) const { put("Shown", shown); }
  void Unmounted(bool unmounted) const { put("Unmounted", unmounted); }
  [[nodiscard]] host::Station Station() const { return child<host::Station>("Station"); }
  /// A view of nothing takes the solid off its station.
  void Station(const host::Station& station) const { put("Station", station.ref()); }
};

/// `Item` may give nothing.
class SolidModels : public Collection<SolidModel> {
 public:
  using Collection::Collection;
  SolidModel Add() const { return SolidModel(call("Add").to_object()); }
  void Remove(std::int32_t index) const { call("Remove", index); }
};

class Turret : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] std::string Name() const { return get("Name").to_text(); }
  [[nodiscard]] std::int32_t Kind() const { return get("Kind").to_int32(); }
  [[nodiscard]] host::Stations Stations() const { return child<host::Stations>("Stations"); }
  [[nodiscard]] SolidModels Solids() const { return child<SolidModels>("Solids"); }
};

using Turrets = Collection<Turret>;

class Program : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] automation::Value Number() const { return get("Number"); }
  [[nodiscard]] automation::Value Name() const { return get("Name"); }
};

class Programs : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] Program Item(const automation::Value& index) const { return child<Program>("Item", index); }
};

class MachineDefinition : public Facade {
 public:
  using Facade::Facade;
  /// Lengths in document units.
  [[nodiscard]] automation::Value MachineOriginX() const { return get("MachineOriginX"); }
  [[nodiscard]] automation::Value MachineOriginY() const { return get("MachineOriginY"); }
  [[nodiscard]] automation::Value MachineOriginZ() const { return get("MachineOriginZ"); }
};

/// What a mill setup and a machine setup have in common.
class Setup : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] automation::Value ProgramNumber() const { return get("ProgramNumber"); }
  [[nodiscard]] automation::Value ProgramName() const { return get("ProgramName"); }
  /// `number` from 1 to 20.
  [[nodiscard]] automation::Value CustomSetting(std::int32_t number) const {
    return numbered("CustomSetting", number);
  }
  /// `number` from 1 to 10.
  [[nodiscard]] automation::Value CustomSettingStr(std::int32_t number) const {
    return numbered("CustomSettingStr", number);
  }
  [[nodiscard]] MachineDefinition CustomMachineDefinition() const {
    return child<MachineDefinition>("CustomMachineDefinition");
  }

 private:
  [[nodiscard]] automation::Value numbered(const char* stem, std::int32_t number) const {
    const std::string name = stem + std::to_string(number);
    return get(automation::Member::named(name));
  }
};

class MachineSetup : public Setup {
 public:
  using Setup::Setup;
  [[nodiscard]] host::Turrets Turrets() const { return child<host::Turrets>("Turrets"); }
  [[nodiscard]] host::Programs Programs() const { return child<host::Programs>("Programs"); }
};

class MillSetup : public Setup {
 public:
  using Setup::Setup;
  [[nodiscard]] host::Stations Stations() const { return child<host::Stations>("Stations"); }
  [[nodiscard]] std::int32_t SpindleSize() const { return get("SpindleSize").to_int32(); }
};

}  // namespace host
