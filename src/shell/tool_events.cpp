#include "formats/tool_identity.h"
#include "foundation/at_end.h"
#include "foundation/global.h"
#include "shapes/orientation.h"
#include "shapes/user_models.h"
#include "shell/Connect.h"
#include "simulation/turn_solids.h"

namespace {

// A tool whose name can't be read leads to a file that no folder has.
std::string model_file_of(const host::Tool& tool) {
  std::string name;
  skip_failure([&] { name = tool.Name(); });
  return tool_identity::model_file(name);
}

void record_orientation(const host::Tool& tool, const char* recorded, const char* present) {
  const host::CustomProperty property = global::GetCustomProperty(tool, recorded, host::type_long);
  skip_failure([&] { property.Value(tool.ToolParameters().Item(present).Value()); });
}

}  // namespace

void Connect::M_Tools_OnModify(const host::Tool& tool) {
  if (global::ToolImportRunning()) return;
  global::OrientationRestorePending() = true;
  PendingTool = tool;
  shapes::MachineView machine;
  shapes::UpdateToolOrientation(tool, machine);
  shapes::show_user_model(tool, model_file_of(tool), machine);
}

void Connect::M_Tools_OnDelete(const host::Tool& tool) {
  PendingTool = tool;
  const std::string model = model_file_of(tool);
  shapes::MachineView machine;
  skip_failure([&] { shapes::RemoveUserModel(model, tool.Station(), 1, machine); });
  PendingTool.release();
}

void Connect::run_deferred_step() {
  const AtEnd step_ends([&] {
    global::OrientationRestorePending() = false;
    PendingTool.release();
  });
  // The step's own writes come back as events, which may set or clear the member.
  const host::Tool tool = PendingTool;
  shapes::MachineView machine;
  shapes::UpdateToolOrientation(tool, machine);
  record_orientation(tool, "OldLatheToolOrientation", "LatheToolOrientation");
  record_orientation(tool, "OldOrientation", "Orientation");
}

void Connect::m_Sim_AfterBegin() {
  simulation::turn_solids(*m_Sim);
}
