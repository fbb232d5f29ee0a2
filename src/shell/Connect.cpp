#include "shell/Connect.h"

#include "foundation/at_end.h"
#include "foundation/global.h"
#include "host/create.h"
#include "platform/component_runtime.h"
#include "shell/mToolBar.h"

using automation::Member;
using automation::Value;

namespace {

/// The host's top-level menu and the entry in it whose sub menu takes the add-in's entry.
constexpr std::int32_t host_menu = 3;
constexpr std::int32_t host_menu_entry = 17;

constexpr std::int32_t last_command = 2;

struct ButtonText {
  std::int32_t button;
  void (host::ToolBarButton::*property)(std::string_view) const;
  const char* key;
  const char* default_text;
};

constexpr std::array<ButtonText, 4> button_texts{{
    {1, &host::ToolBarButton::ScreenTip, "ScreenTip1", "Tool from Quorvex"},
    {2, &host::ToolBarButton::ScreenTip, "ScreenTip2", "ToolList -> Quorvex"},
    {1, &host::ToolBarButton::HelpString, "HelpString1", "get Tool from Quorvex"},
    {2, &host::ToolBarButton::HelpString, "HelpString2", "put the actuak Toollist to Quorvex"},
}};

constexpr std::int32_t rgb(std::int32_t red, std::int32_t green, std::int32_t blue) {
  return red + 256 * green + 65536 * blue;
}

void set_up_shape_manager(const host::Application& application) {
  global::ShapeManager() = host::new_shape_manager();
  const host::ShapeManager& manager = global::ShapeManager();
  manager.Attach(application);
  manager.ExePath(global::GetEnvPath("QVEspritInstallPath") + "qvxtshape.exe");
  manager.UserModelsPath(global::GetEnvPath("QVEspritUserModelsPath"));
  manager.ShapeColor(rgb(150, 150, 150));
  manager.ShapeMode(0);
  manager.ShapeFlag(true);
}

}  // namespace

Connect::Connect()
    : Application(handler_of(Source::Application)),
      AddIn(handler_of(Source::AddIn)),
      Document(handler_of(Source::Document)),
      m_Sim(handler_of(Source::m_Sim)),
      M_Tools(handler_of(Source::M_Tools)) {}

automation::EventHandler Connect::handler_of(Source source) {
  return
      [this, source](Member event, std::span<Value> args) { enter([&] { on_event(source, event, args); }); };
}

void Connect::IDTExtensibility2_OnConnection(host::Application CallingApplication) {
  Application.set(std::move(CallingApplication));
  if (!Application->is_nothing()) global::lend_application(*Application);
  bool is_connected = false;
  const AtEnd state_goes_back([&] {
    if (!is_connected && global::another_is_lent(*Application)) global::take_application_back(*Application);
  });
  AddIn.set(Application->AddIn());
  Cookie = AddIn->Cookie();
  global::AddInName() = "QVEsprit";
  set_up_shape_manager(*Application);
  for (std::int32_t number = 0; number <= last_command; ++number) {
    CommandIds.at(static_cast<std::size_t>(number)) = AddIn->AddCommand(Cookie, number, global::AddInName());
  }
  AddInMenu = Application->Menus().Item(host_menu).Item(host_menu_entry).SubMenu();
  is_connected = true;

  // From here on failures are skipped: the add-in connects with what it got.
  make_menu_entry();
  make_tool_bar();
  mToolBar::restore(AddInToolBar, global::AddInName());
  skip_failure([&] { BindDocumentEvents(Reason::connection); });
}

void Connect::make_menu_entry() {
  remove_menu_entry();  // of an earlier run
  skip_failure([&] { AddInMenu.Add(host::kind_command, global::AddInName(), CommandIds[0], 1); });
  skip_failure([&] { AddInMenu.Add(host::kind_separator, "", 0, 2); });
}

void Connect::make_tool_bar() {
  const std::string& name = global::AddInName();
  skip_failure([&] { Application->ToolBars().Remove(name); });
  skip_failure([&] { AddInToolBar = Application->ToolBars().Add(name); });
  for (std::int32_t number = 1; number <= last_command; ++number) {
    const std::int32_t id = CommandIds[static_cast<std::size_t>(number)];
    skip_failure([&] { AddInToolBar.Add(host::kind_command, name + std::to_string(number), id); });
    skip_failure([&] { AddInToolBar.Item(number).Visible(true); });
  }
  write_button_texts();
  const std::string folder = platform::component_folder() + "\\Bitmaps\\";
  for (std::int32_t number = 1; number <= last_command; ++number) {
    const std::string ending = "-" + std::to_string(number) + ".bmp";
    skip_failure([&] {
      AddInToolBar.Item(number).SetBitmaps(folder + name + "16" + ending, folder + name + "32" + ending);
    });
    skip_failure([&] { AddInToolBar.Item(number).Visible(true); });
  }
}

void Connect::write_button_texts() {
  global::open_texts("ToolBar", skipped);
  for (const ButtonText& row : button_texts) {
    skip_failure([&] {
      const host::ToolBarButton button = AddInToolBar.Item(row.button);
      (button.*row.property)(global::text_reader().GetString(row.key, row.default_text));
    });
  }
}

void Connect::remove_menu_entry() {
  skip_failure([&] { AddInMenu.Remove(global::AddInName()); });
  if (passes([&] { return AddInMenu.Item(1).Kind() == host::kind_separator; })) {
    skip_failure([&] { AddInMenu.Remove(1); });
  }
}

bool Connect::owns_the_state() const {
  return global::is_lent(*Application);
}

// One that is gone already has been detached.
void Connect::detach_shape_manager() const {
  if (owns_the_state() && !global::ShapeManager().is_nothing())
    global::ShapeManager().Attach(host::Application());
}

void Connect::release_shape_manager() const {
  if (owns_the_state()) global::ShapeManager().release();
}

// Who was connected since has cleared away what was here, and what bears the name now is that one's.
void Connect::remove_user_interface() {
  const bool is_ours = owns_the_state();
  if (is_ours) {
    mToolBar::save(AddInToolBar, global::AddInName());
    remove_menu_entry();
  }
  AddInMenu.release();
  if (is_ours) skip_failure([&] { Application->ToolBars().Remove(global::AddInName()); });
}

void Connect::IDTExtensibility2_OnBeginShutdown() {
  detach_shape_manager();
  release_shape_manager();
  // From here on failures are skipped.
  remove_user_interface();
  m_Sim.release();
  AddInToolBar.release();
  AddIn.release();
  Document.release();
  Application.release();
}

void Connect::IDTExtensibility2_OnDisconnection() {
  // Failures are skipped throughout.
  skip_failure([&] { detach_shape_manager(); });
  release_shape_manager();
  remove_user_interface();
  m_Sim.release();
  AddInToolBar.release();
  AddIn.release();
  Application.release();
}

Connect::~Connect() {
  // Failures are skipped throughout.
  remove_user_interface();
  if (owns_the_state()) global::release_text_reader();
  M_Tools.release();
  release_shape_manager();
  m_Sim.release();
  AddInToolBar.release();
  Document.release();
  global::take_application_back(*Application);
  Application.release();
  AddIn.release();
}

std::int32_t Connect::RefreshQuorvexShapes(const host::Document& ActDocument) {
  const host::Tools tools = ActDocument.Tools();
  return global::ShapeManager().RefreshToolShapes(tools);
}

std::string Connect::GetAppTextFile() {
  return global::GetTextFileName();
}

double Connect::PI() {
  return global::PI();
}
