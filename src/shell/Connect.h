#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <utility>

#include "automation/number.h"
#include "foundation/edge.h"
#include "host/application.h"
#include "host/event_member.h"
#include "platform/text.h"

/// The add-in as its host sees it: the connection interface, the public operations, and the handlers of the
/// host's events. Host objects are held only by the members; a binding exists exactly while its member holds
/// an object. Failures that a procedure doesn't handle are thrown to the host. The process-wide state belongs
/// to the Connect that was connected last: no other one takes it back.
class Connect : public std::enable_shared_from_this<Connect> {
 public:
  Connect();
  /// The end of the object does what the take-down left to do; it skips failures.
  ~Connect();
  Connect(const Connect&) = delete;
  Connect& operator=(const Connect&) = delete;

  /// Around every entry of the host, by a call or an event: one that is shared lives to the entry's end,
  /// whoever lets go of it meanwhile; the system's decimal sign is asked for anew; nothing but a Failure
  /// leaves.
  template <class Entry>
  decltype(auto) enter(Entry&& entry) {
    const automation::DecimalSign sign(platform::decimal_sign);
    const auto self = weak_from_this().lock();
    return only_failures_leave(std::forward<Entry>(entry));
  }

  void IDTExtensibility2_OnConnection(host::Application CallingApplication);
  void IDTExtensibility2_OnDisconnection();
  void IDTExtensibility2_OnAddInsUpdate() {}
  void IDTExtensibility2_OnStartupComplete() {}
  void IDTExtensibility2_OnBeginShutdown();

  /// Gives the number of tools whose shapes were refreshed.
  std::int32_t RefreshQuorvexShapes(const host::Document& ActDocument);
  std::string GetAppTextFile();
  /// 4 times the arctangent of 1.
  double PI();

 private:
  /// Why the document's events are bound.
  enum class Reason : std::int16_t { connection = 0, new_document = 1, template_open = 2, document_open = 3 };

  /// What raises events, each by the member that receives them.
  enum class Source : std::uint8_t { Application, AddIn, Document, M_Tools, m_Sim };
  automation::EventHandler handler_of(Source source);
  /// Hands an event to its handler, by one table; events without one are passed over.
  void on_event(Source source, automation::Member event, std::span<automation::Value> args);

  void Application_AfterDocumentOpen();
  void Application_AfterNewDocumentOpen();
  void Application_AfterTemplateOpen();
  void Application_AfterDocumentClose() {}
  void AddIn_OnCommand(std::int32_t cookie, std::int32_t nCmdId);
  void AddIn_OnCommandUI(std::int32_t cookie, std::int32_t UserID, automation::Value& Enabled);
  void Document_BeforeDocumentClose();
  void M_Tools_OnCreate() {}
  void M_Tools_OnModify(const host::Tool& tool);
  void M_Tools_OnDelete(const host::Tool& tool);
  void m_Sim_AfterBegin();
  void m_Sim_OnSimulateTool() {}
  /// What M_Tools_OnModify announced: brings the recorded orientations of PendingTool up to date.
  void run_deferred_step();

  void BindDocumentEvents(Reason reason);
  void make_menu_entry();
  void make_tool_bar();
  void write_button_texts();
  void remove_menu_entry();
  /// Whether the process-wide state is this one's.
  [[nodiscard]] bool owns_the_state() const;
  void detach_shape_manager() const;
  void release_shape_manager() const;
  /// What all three ends of the add-in begin with.
  void remove_user_interface();

  host::EventMember<host::Application> Application;
  host::EventMember<host::AddIn> AddIn;
  host::EventMember<host::Document> Document;
  host::EventMember<host::Simulation> m_Sim;
  host::EventMember<host::Tools> M_Tools;
  std::int32_t Cookie = 0;
  /// By command number; 0 to 2 are given.
  std::array<std::int32_t, 11> CommandIds{};
  host::MenuItems AddInMenu;
  host::ToolBar AddInToolBar;
  host::Tool PendingTool;
};
