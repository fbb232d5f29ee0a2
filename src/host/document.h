#pragma once

#include "host/machine.h"
#include "host/simulation.h"
#include "host/tool.h"

namespace host {

class Operation : public Facade {
 public:
  using Facade::Facade;
  /// The parameters of the tool that the operation uses.
  [[nodiscard]] ToolParameters ToolSettings() const { return child<ToolParameters>("ToolSettings"); }
  [[nodiscard]] double Duration() const { return get("Duration").to_double(); }
};

using Operations = Collection<Operation>;

/// MachineType: what the document's machine carries its tools on.
inline constexpr std::int32_t machine_with_turrets = 1;
inline constexpr std::int32_t mill_machine = 2;

/// The source of BeforeDocumentClose.
class Document : public WithCustomProperties {
 public:
  using WithCustomProperties::WithCustomProperties;
  [[nodiscard]] std::string Name() const { return get("Name").to_text(); }
  void Refresh() const { call("Refresh", automation::missing, automation::missing); }
  [[nodiscard]] host::Tools Tools() const { return child<host::Tools>("Tools"); }
  [[nodiscard]] host::Simulation Simulation() const { return child<host::Simulation>("Simulation"); }
  [[nodiscard]] std::int32_t MachineType() const { return get("MachineType").to_int32(); }
  /// 1: MillSetup, 2: MachineSetup.
  [[nodiscard]] std::int32_t SetupKind() const { return get("SetupKind").to_int32(); }
  /// 70 for a document in inches.
  [[nodiscard]] std::int32_t UnitSystem() const { return get("UnitSystem").to_int32(); }
  [[nodiscard]] host::MachineSetup MachineSetup() const { return child<host::MachineSetup>("MachineSetup"); }
  [[nodiscard]] host::MillSetup MillSetup() const { return child<host::MillSetup>("MillSetup"); }
  [[nodiscard]] host::Operations Operations() const { return child<host::Operations>("Operations"); }
  [[nodiscard]] bool IsToolUsed(const Tool& tool) const { return call("IsToolUsed", tool.ref()).to_bool(); }
};

}  // namespace host
