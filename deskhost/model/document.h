#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "automation/event_hub.h"
#include "deskhost/model/custom_properties.h"
#include "deskhost/model/machine.h"
#include "deskhost/model/operations.h"
#include "deskhost/model/simulation.h"
#include "deskhost/model/tools.h"

namespace deskhost {

inline constexpr std::int32_t inches = 70;
inline constexpr std::int32_t millimetres = 71;

/// An open document. Members: Name, Refresh, Tools, Simulation, MachineType, SetupKind, UnitSystem,
/// MachineSetup, MillSetup, CustomProperties, Operations, IsToolUsed(tool). Event: BeforeDocumentClose(). Its
/// parts don't refer back to it: whoever holds one may outlive the document.
class Document final : public DeskObject {
 public:
  Document(DeskRef desk, std::string name_text);

  [[nodiscard]] std::string trace_name() const override { return "Document"; }
  automation::Value get(automation::Member member, automation::Args args) override;
  automation::Value call(automation::Member member, automation::Args args) override;
  automation::Events* events() noexcept override { return &hub_; }

  [[nodiscard]] Tools& tools() const noexcept { return *tools_; }
  [[nodiscard]] const std::shared_ptr<Tools>& tools_ref() const noexcept { return tools_; }
  [[nodiscard]] Operations& operations() const noexcept { return *operations_; }
  [[nodiscard]] CustomProperties& custom_properties() const noexcept { return *custom_properties_; }
  [[nodiscard]] Simulation& simulation() const noexcept { return *simulation_; }
  /// How often the document was refreshed.
  [[nodiscard]] int refreshes() const noexcept { return refreshes_; }

  /// As Tools does.
  void user_modify(const std::shared_ptr<Tool>& tool,
                   const std::vector<std::pair<std::string, std::string>>& changes) {
    tools_->user_modify(tool, changes);
  }
  void user_delete(const std::shared_ptr<Tool>& tool) { tools_->user_delete(tool); }
  /// The simulation's AfterBegin, then OnSimulateTool for each tool of the scene.
  void simulate() { simulation_->run(); }
  void raise_before_close();

  std::string name;
  std::int32_t machine_type = 1;  ///< 1 turrets, 2 mill
  std::int32_t setup_kind = 2;    ///< 1 mill, 2 turrets
  std::int32_t unit_system = millimetres;
  /// Null for a setup that is nothing.
  std::shared_ptr<MachineSetup> machine_setup = std::make_shared<MachineSetup>();
  std::shared_ptr<MillSetup> mill_setup = std::make_shared<MillSetup>();

 private:
  DeskRef desk_;
  automation::EventHub hub_;
  std::shared_ptr<Tools> tools_;
  std::shared_ptr<Operations> operations_;
  std::shared_ptr<CustomProperties> custom_properties_;
  std::shared_ptr<Simulation> simulation_;
  int refreshes_ = 0;
};

}  // namespace deskhost
