#include "foundation/failures.h"
#include "foundation/global.h"
#include "import/mQuorvex.h"
#include "shell/Connect.h"
#include "toollist/mQuorvexList.h"

using automation::id;
using automation::Member;
using automation::Value;

namespace {

constexpr std::int32_t command_tool_bar = 0;
constexpr std::int32_t command_import = 1;
constexpr std::int32_t command_export = 2;

// An event that comes with fewer arguments than it has is a slip of the host.
Value& argument(std::span<Value> args, std::size_t index) {
  if (index >= args.size()) throw automation::Failure(automation::Error::argument_missing);
  return args[index];
}

/// Releases a member at the end of a command, whichever way it ends.
template <class Member>
class ReleaseAtEnd {
 public:
  explicit ReleaseAtEnd(Member& member) : member_(member) {}
  ~ReleaseAtEnd() { member_.release(); }
  ReleaseAtEnd(const ReleaseAtEnd&) = delete;
  ReleaseAtEnd& operator=(const ReleaseAtEnd&) = delete;

 private:
  Member& member_;
};

}  // namespace

void Connect::on_application_event(Member event, std::span<Value> /*args*/) {
  switch (event.id()) {
    case id("AfterDocumentOpen"):
      return BindDocumentEvents(Reason::document_open);
    case id("AfterNewDocumentOpen"):
      return BindDocumentEvents(Reason::new_document);
    case id("AfterTemplateOpen"):
      return BindDocumentEvents(Reason::template_open);
    default:
      return;  // AfterDocumentClose asks for nothing
  }
}

void Connect::on_add_in_event(Member event, std::span<Value> args) {
  switch (event.id()) {
    case id("OnCommand"):
      return AddIn_OnCommand(argument(args, 0).to_int32(), argument(args, 1).to_int32());
    case id("OnCommandUI"):
      // first, and whatever the event is about
      if (global::OrientationRestorePending) run_deferred_step();
      return AddIn_OnCommandUI(argument(args, 0).to_int32(), argument(args, 1).to_int32(), argument(args, 2));
    default:
      return;
  }
}

void Connect::on_document_event(Member event, std::span<Value> /*args*/) {
  if (event == Member("BeforeDocumentClose")) Document_BeforeDocumentClose();
}

void Connect::on_tools_event(Member event, std::span<Value> args) {
  switch (event.id()) {
    case id("OnModify"):
      return M_Tools_OnModify(host::Tool(argument(args, 2).to_object()));
    case id("OnDelete"):
      return M_Tools_OnDelete(host::Tool(argument(args, 0).to_object()));
    default:
      return;  // OnCreate asks for nothing
  }
}

void Connect::on_simulation_event(Member event, std::span<Value> /*args*/) {
  if (event == Member("AfterBegin")) m_Sim_AfterBegin();  // OnSimulateTool asks for nothing
}

void Connect::AddIn_OnCommand(std::int32_t cookie, std::int32_t nCmdId) {
  if (cookie != Cookie) return;
  const ReleaseAtEnd document_is_released(Document);
  if (nCmdId > 0) Document.set(Application->Document());
  switch (nCmdId) {
    case command_tool_bar:
      return AddInToolBar.Visible(!AddInToolBar.Visible());
    case command_import:
      return mQuorvex::ImportTools();
    case command_export:
      return mQuorvexList::ExportToolList();
    default:
      return;
  }
}

void Connect::AddIn_OnCommandUI(std::int32_t cookie, std::int32_t UserID, Value& Enabled) {
  if (cookie != Cookie) return;
  host::Document document;
  skip_failure([&] { document = Application->Document(); });
  Enabled = !(document.is_nothing() && UserID > 0);
}

void Connect::BindDocumentEvents(Reason reason) {
  if (Application->Document().is_nothing()) return;
  Document.set(Application->Document());
  m_Sim.set(Document->Simulation());
  M_Tools.set(Document->Tools());
  global::ShapeManager.ShapeCache().Clear();
  if (reason != Reason::connection) global::ShapeManager.RestoreToolShapes(Document->Tools());
}

void Connect::Document_BeforeDocumentClose() {
  M_Tools.release();
  global::ShapeManager.ShapeCache().Clear();
}
