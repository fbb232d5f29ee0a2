#include <array>

#include "foundation/at_end.h"
#include "foundation/global.h"
#include "import/mQuorvex.h"
#include "shell/Connect.h"
#include "toollist/mQuorvexList.h"

using automation::Member;
using automation::Value;

namespace {

constexpr std::int32_t command_tool_bar = 0;
constexpr std::int32_t command_import = 1;
constexpr std::int32_t command_export = 2;

/// An event's arguments, by their index from 0, as its handler takes them. One that comes with fewer than it
/// has is a slip of the host.
class Arguments {
 public:
  explicit Arguments(std::span<Value> values) : values_(values) {}

  [[nodiscard]] Value& operator[](std::size_t index) const {
    if (index >= values_.size()) throw automation::Failure(automation::Error::argument_missing);
    return values_[index];
  }
  [[nodiscard]] std::int32_t number(std::size_t index) const { return (*this)[index].to_int32(); }
  [[nodiscard]] host::Tool tool(std::size_t index) const { return host::Tool((*this)[index].to_object()); }

 private:
  std::span<Value> values_;
};

}  // namespace

void Connect::on_event(Source source, Member event, std::span<Value> values) {
  struct Row {
    Source source;
    Member event;
    void (*handler)(Connect& self, Arguments args);
  };
  // What a handler doesn't need isn't converted.
  static constexpr auto rows = std::to_array<Row>({
      {Source::Application, "AfterDocumentOpen",
       [](Connect& self, Arguments) { self.Application_AfterDocumentOpen(); }},
      {Source::Application, "AfterNewDocumentOpen",
       [](Connect& self, Arguments) { self.Application_AfterNewDocumentOpen(); }},
      {Source::Application, "AfterTemplateOpen",
       [](Connect& self, Arguments) { self.Application_AfterTemplateOpen(); }},
      {Source::Application, "AfterDocumentClose",
       [](Connect& self, Arguments) { self.Application_AfterDocumentClose(); }},
      {Source::AddIn, "OnCommand",
       [](Connect& self, Arguments args) { self.AddIn_OnCommand(args.number(0), args.number(1)); }},
      {Source::AddIn, "OnCommandUI",
       [](Connect& self, Arguments args) {
         // first, and whatever the event is about
         if (global::OrientationRestorePending()) self.run_deferred_step();
         self.AddIn_OnCommandUI(args.number(0), args.number(1), args[2]);
       }},
      {Source::Document, "BeforeDocumentClose",
       [](Connect& self, Arguments) { self.Document_BeforeDocumentClose(); }},
      {Source::M_Tools, "OnCreate", [](Connect& self, Arguments) { self.M_Tools_OnCreate(); }},
      {Source::M_Tools, "OnModify",
       [](Connect& self, Arguments args) { self.M_Tools_OnModify(args.tool(2)); }},
      {Source::M_Tools, "OnDelete",
       [](Connect& self, Arguments args) { self.M_Tools_OnDelete(args.tool(0)); }},
      {Source::m_Sim, "AfterBegin", [](Connect& self, Arguments) { self.m_Sim_AfterBegin(); }},
      {Source::m_Sim, "OnSimulateTool", [](Connect& self, Arguments) { self.m_Sim_OnSimulateTool(); }},
  });
  for (const Row& row : rows) {
    if (row.source == source && row.event == event) return row.handler(*this, Arguments(values));
  }
}

void Connect::Application_AfterDocumentOpen() {
  BindDocumentEvents(Reason::document_open);
}

void Connect::Application_AfterNewDocumentOpen() {
  BindDocumentEvents(Reason::new_document);
}

void Connect::Application_AfterTemplateOpen() {
  BindDocumentEvents(Reason::template_open);
}

void Connect::AddIn_OnCommand(std::int32_t cookie, std::int32_t nCmdId) {
  if (cookie != Cookie) return;
  const AtEnd document_is_released([&] { Document.release(); });
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
  global::ShapeManager().ShapeCache().Clear();
  if (reason != Reason::connection) global::ShapeManager().RestoreToolShapes(Document->Tools());
}

void Connect::Document_BeforeDocumentClose() {
  M_Tools.release();
  global::ShapeManager().ShapeCache().Clear();
}
