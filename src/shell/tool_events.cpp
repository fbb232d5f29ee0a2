#include "foundation/global.h"
#include "shell/Connect.h"

void Connect::M_Tools_OnModify(const host::Tool& tool) {
  if (global::ToolImportRunning) return;
  global::OrientationRestorePending = true;
  PendingTool = tool;
}

void Connect::M_Tools_OnDelete(const host::Tool& /*tool*/) {
  PendingTool.release();
}

void Connect::run_deferred_step() {
  global::OrientationRestorePending = false;
  PendingTool.release();
}

void Connect::m_Sim_AfterBegin() {}
