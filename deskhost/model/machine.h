#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "deskhost/model/collection.h"

namespace deskhost {

/// A place for a tool. Members as in the fields below. Lengths in document units, angles in radians.
class Station final : public DeskObject {
 public:
  /// `turret_number` is 0 for a station of the mill setup; `place_number` counts from 1.
  Station(int turret_number, int place_number)
      : number(place_number), turret(turret_number), place(place_number) {}

  [[nodiscard]] std::string trace_name() const override;
  automation::Value get(automation::Member member, automation::Args args) override;
  void put(automation::Member member, automation::Args args, const automation::Value& value) override;

  std::int32_t number;
  std::int32_t tool_reference = 0;
  double radial_offset = 0;
  double axial_offset = 0;
  double turret_angle = 0;
  double tilt_angle = 0;
  const int turret;
  const int place;

 private:
  [[nodiscard]] double* length_or_angle(automation::Member member) noexcept;
};
using Stations = Collection<Station>;

class SolidModels;

/// The entry of a user model on a turret. Members: Name, ModelPath, Color, Shown, Unmounted, Station.
class SolidModel final : public DeskObject {
 public:
  explicit SolidModel(std::weak_ptr<const SolidModels> collection) : collection_(std::move(collection)) {}

  [[nodiscard]] std::string trace_name() const override;
  automation::Value get(automation::Member member, automation::Args args) override;
  void put(automation::Member member, automation::Args args, const automation::Value& value) override;

  std::string name;
  std::string model_path;
  std::int32_t color = 0;
  bool shown = false;
  bool unmounted = false;
  std::shared_ptr<Station> station;
  /// The place of the station from 1, 0 for none: a document file knows a station by it alone, also one
  /// beyond the stations of this turret.
  std::int32_t station_place = 0;

 private:
  std::weak_ptr<const SolidModels> collection_;
};

/// Members: those of a collection, Add() and Remove(index from 1).
class SolidModels final : public Collection<SolidModel> {
 public:
  explicit SolidModels(int turret_number);
  automation::Value call(automation::Member member, automation::Args args) override;
  std::shared_ptr<SolidModel> add();
  const int turret;
};

/// Members: Name, Kind, Stations, Solids.
class Turret final : public DeskObject {
 public:
  explicit Turret(int turret_number);

  [[nodiscard]] std::string trace_name() const override;
  automation::Value get(automation::Member member, automation::Args args) override;

  std::string name;
  std::int32_t kind = 1;
  const int number;
  const std::shared_ptr<Stations> stations;
  const std::shared_ptr<SolidModels> solids;
};

/// Members: Number, Name.
class Program final : public DeskObject {
 public:
  explicit Program(int place_number) : place(place_number) {}
  [[nodiscard]] std::string trace_name() const override;
  automation::Value get(automation::Member member, automation::Args args) override;

  std::int32_t number = 0;
  std::string name;
  const int place;
};

/// Members: MachineOriginX, MachineOriginY, MachineOriginZ; lengths in document units.
class MachineDefinition final : public DeskObject {
 public:
  [[nodiscard]] std::string trace_name() const override { return "CustomMachineDefinition"; }
  automation::Value get(automation::Member member, automation::Args args) override;

  std::array<double, 3> origin{};
};

/// What both setups have. Members: ProgramNumber, ProgramName, CustomSetting1 to 20, CustomSettingStr1 to 10,
/// CustomMachineDefinition.
class Setup : public DeskObject {
 public:
  automation::Value get(automation::Member member, automation::Args args) override;

  std::int32_t program_number = 0;
  std::string program_name;
  std::array<double, 20> custom_settings{};
  std::array<std::string, 10> custom_setting_texts;
  const std::shared_ptr<MachineDefinition> definition = std::make_shared<MachineDefinition>();
};

/// Further members: Turrets, Programs.
class MachineSetup final : public Setup {
 public:
  [[nodiscard]] std::string trace_name() const override { return "MachineSetup"; }
  automation::Value get(automation::Member member, automation::Args args) override;

  const std::shared_ptr<Collection<Turret>> turrets = std::make_shared<Collection<Turret>>("Turrets");
  const std::shared_ptr<Collection<Program>> programs = std::make_shared<Collection<Program>>("Programs");
};

/// Further members: SpindleSize, Stations.
class MillSetup final : public Setup {
 public:
  [[nodiscard]] std::string trace_name() const override { return "MillSetup"; }
  automation::Value get(automation::Member member, automation::Args args) override;

  std::int32_t spindle_size = 0;
  const std::shared_ptr<Stations> stations = std::make_shared<Stations>("MillSetup.Stations");
};

}  // namespace deskhost
