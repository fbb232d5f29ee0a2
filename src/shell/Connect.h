#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "host/application.h"
#include "host/event_member.h"

/// The add-in as its host sees it: the connection interface, the public operations, and the handlers of the
/// host's events. Host objects are held only by the members; a binding exists exactly while its member holds
/// an object. Failures that a procedure doesn't handle are thrown to the host.
class Connect {
 public:
  Connect();
  /// The end of the object does what the take-down left to do; it skips failures.
  ~Connect();
  Connect(const Connect&) = delete;
  Connect& operator=(const Connect&) = delete;

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

  automation::EventHandler handler(void (Connect::*on_event)(automation::Member,
                                                             std::span<automation::Value>));
  void on_application_event(automation::Member event, std::span<automation::Value> args);
  void on_add_in_event(automation::Member event, std::span<automation::Value> args);
  void on_document_event(automation::Member event, std::span<automation::Value> args);
  void on_tools_event(automation::Member event, std::span<automation::Value> args);
  void on_simulation_event(automation::Member event, std::span<automation::Value> args);

  void AddIn_OnCommand(std::int32_t cookie, std::int32_t nCmdId);
  void AddIn_OnCommandUI(std::int32_t cookie, std::int32_t UserID, automation::Value& Enabled);
  void Document_BeforeDocumentClose();
  void M_Tools_OnModify(const host::Tool& tool);
  void M_Tools_OnDelete(const host::Tool& tool);
  void m_Sim_AfterBegin();
  /// What M_Tools_OnModify announced: brings the recorded orientations of PendingTool up to date.
  void run_deferred_step();

  void BindDocumentEvents(Reason reason);
  void make_menu_entry();
  void make_tool_bar();
  void write_button_texts();
  void remove_menu_entry();
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
