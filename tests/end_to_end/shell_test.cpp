#include <cmath>
#include <numbers>

#include "automation/event_hub.h"
#include "component/connect_object.h"
#include "deskhost/console/user_interface_dump.h"
#include "end_to_end/desk.h"
#include "foundation/Registry.h"
#include "foundation/global.h"
#include "platform/component_runtime.h"
#include "platform/files.h"
#include "platform/message_box.h"

namespace end_to_end {
namespace {

using Json = nlohmann::json;
using Texts = std::vector<std::string>;

const Json empty_document{{"Name", "Shaft.esp"}};
const std::string key = "Software\\D.P.Technology\\Esprit\\QVEsprit";

class Shell : public Desk {
 protected:
  Json interface() {
    std::ostringstream out;
    deskhost::dump_user_interface(session->application(), out);
    return Json::parse(out.str());
  }
  Texts menu() {
    Texts captions;
    const Json shown = interface();
    for (const Json& item : shown["Menu"]) captions.push_back(item["Caption"]);
    return captions;
  }
  Json tool_bar() {
    const Json bars = interface()["ToolBars"];
    return bars.empty() ? Json() : bars[0];
  }
  std::string stored(const char* name) { return Registry::GetRegistryValue(1, key, name); }
  void store(const char* name, const std::string& text) { Registry::SaveRegistryString(1, key, name, text); }
};

TEST_F(Shell, ConnectsServesAndLeavesNothingBehind) {
  start();
  EXPECT_EQ(menu(), (Texts{"QVEsprit", "", "Options", "", "About"}));
  EXPECT_EQ(tool_bar()["Buttons"][0]["ScreenTip"], "Tool from Quorvex");
  EXPECT_EQ(tool_bar()["Buttons"][1]["HelpString"], "put the actuak Toollist to Quorvex");
  EXPECT_EQ(tool_bar()["Visible"], true);

  EXPECT_TRUE(session->command_ui(0));
  EXPECT_FALSE(session->command_ui(1));
  session->command(0);
  EXPECT_EQ(tool_bar()["Visible"], false);
  session->command(0);
  session->foreign(0);
  EXPECT_EQ(tool_bar()["Visible"], true);

  open(empty_document);
  EXPECT_TRUE(session->command_ui(2));
  session->command(7);
  EXPECT_EQ(failures, Texts{});
  const std::size_t before_close = trace().size();
  session->close();
  for (std::size_t i = before_close; i < trace().size(); ++i) {
    EXPECT_NE(trace()[i]["on"], "ShapeCache")
        << "a command has released the document, so its close isn't heard";
  }
  open(empty_document);
  session->close();
  const Json heard = trace().at(trace().size() - 2);  // the last line is AfterDocumentClose
  EXPECT_EQ(heard["on"], "ShapeCache");
  EXPECT_EQ(heard["member"], "Clear");

  const automation::Ref connect = session->addin();
  EXPECT_EQ(connect->call("PI", {}).to_double(), std::numbers::pi);
  EXPECT_TRUE(connect->call("GetAppTextFile", {}).to_text().ends_with("\\QVEspritEng.txt"));
  session->language(4);
  EXPECT_TRUE(connect->call("GetAppTextFile", {}).to_text().ends_with("\\QVEspritGer.txt"));
  session->language(13);
  EXPECT_TRUE(connect->call("GetAppTextFile", {}).to_text().ends_with("\\QVEspritEng.txt"));
}

TEST_F(Shell, TakesDownInAnyOrderAndConnectsAgain) {
  const std::vector<std::vector<void (deskhost::Session::*)()>> orders{
      {&deskhost::Session::shutdown, &deskhost::Session::disconnect, &deskhost::Session::release},
      {&deskhost::Session::disconnect, &deskhost::Session::shutdown, &deskhost::Session::release},
      {&deskhost::Session::release}};
  start();
  for (const auto& order : orders) {
    open(empty_document);
    for (const auto step : order) ((*session).*step)();
    EXPECT_EQ(menu(), (Texts{"Options", "", "About"}));
    EXPECT_TRUE(tool_bar().is_null());
    EXPECT_EQ(session->gate().left_behind(), "");
    EXPECT_EQ(failures, Texts{});
    session->connect();
    EXPECT_EQ(menu().front(), "QVEsprit");
  }
}

/// A host that has events and refuses all else.
struct Refusing : automation::Object {
  using Args = automation::Args;
  automation::Value get(automation::Member, Args) override { throw automation::Failure("refused"); }
  void put(automation::Member, Args, const automation::Value&) override {}
  automation::Value call(automation::Member, Args) override { throw automation::Failure("refused"); }
  automation::Events* events() noexcept override { return &hub; }
  automation::EventHub hub;
};

TEST_F(Shell, OutlivesAnObjectThatWasNeverConnected) {
  start();
  for (const char* step : {"PI", "OnBeginShutdown", "OnDisconnection"}) {
    component::make_connect_object()->call(automation::Member::named(step), {});
  }
  std::array<automation::Value, 1> host{automation::Ref(std::make_shared<Refusing>())};
  EXPECT_THROW(component::make_connect_object()->call("OnConnection", host), automation::Failure);
  open(empty_document);
  EXPECT_TRUE(session->addin()->call("GetAppTextFile", {}).to_text().ends_with("\\QVEspritEng.txt"));
  EXPECT_EQ(tool_bar()["Visible"], true);
  EXPECT_EQ(failures, Texts{});
}

// The user closes the host, which may also connect anew, while a command shows a message.
TEST_F(Shell, LivesToTheEndOfItsCommand) {
  const testing_support::WithVariable unset("QVMakeListPath", "");
  for (const bool anew : {false, true}) {
    start();
    open(empty_document);
    platform::set_message_sink([&](std::string_view text, std::string_view, platform::Icon) {
      messages.emplace_back(text);
      session->release();
      EXPECT_EQ(component::objects_alive(), 1) << "the command isn't at its end";
      if (anew && !session->addin()) session->connect();
    });
    session->command(2);
    EXPECT_EQ(messages.front(), "Enviorementvariable :QVMakeListPath not set!");
    EXPECT_EQ(component::objects_alive(), anew ? 1 : 0);
    EXPECT_EQ(menu(),
              anew ? Texts({"QVEsprit", "", "Options", "", "About"}) : Texts({"Options", "", "About"}));
    EXPECT_EQ(tool_bar().is_null(), !anew);
    session->connect();
    open(empty_document);
    EXPECT_EQ(failures, Texts{});
  }
}

TEST_F(Shell, HandsOnTheFirstHalfOfTheConnectionAndSkipsTheSecond) {
  start();
  std::uint64_t skipped_from = 0;
  std::uint64_t last = 0;
  for (const Json& line : trace()) {
    if (!line.contains("n")) break;
    last = line["n"];
    if (skipped_from == 0 && line["on"] == "MenuItems" && line["member"] == "Remove") skipped_from = last;
  }
  ASSERT_GT(skipped_from, 10U);
  for (std::uint64_t n = 1; n <= last; ++n) {
    start(n);
    const Texts expected = n < skipped_from ? Texts{"OnConnection: The host refuses the call"} : Texts{};
    EXPECT_EQ(failures, expected) << "call " << n;
    open(empty_document);
    session->command(0);
    end();  // asserts that nothing is left
  }
}

TEST_F(Shell, GoesOnWithoutItsSurroundings) {
  for (const char* name : {"QVEspritInstallPath", "QVEspritUserModelsPath"})
    testing_support::set_variable(name, std::nullopt);
  start();
  EXPECT_EQ(messages, (Texts{"Enviorementvariable :QVEspritInstallPath not set!",
                             "Enviorementvariable :QVEspritUserModelsPath not set!"}));
  EXPECT_EQ(failures, Texts{});
  EXPECT_EQ(tool_bar()["Buttons"].size(), 2U);

  const std::string text_file = platform::native_path(platform::component_folder() + "\\QVEspritGer.txt");
  std::ofstream(text_file, std::ios::binary)
      << "[ToolBar]\r\nScreenTip1=\" Werkzeug\"\r\nHelpString2=\r\n[MSG]\r\nnotSet= fehlt\r\n";
  session->language(4);
  session->release();
  messages.clear();
  session->connect();
  EXPECT_EQ(tool_bar()["Buttons"][0]["ScreenTip"], " Werkzeug");
  EXPECT_EQ(tool_bar()["Buttons"][1]["ScreenTip"], "ToolList -> Quorvex");
  EXPECT_EQ(tool_bar()["Buttons"][1]["HelpString"], "") << "an empty value is a value";
  EXPECT_EQ(messages.at(0), "Enviorementvariable :QVEspritInstallPathfehlt");
  std::filesystem::remove(text_file);
}

TEST_F(Shell, PutsTheToolBarBackWhereItWas) {
  struct Case {
    const char* position;
    const char* top;
    const char* left;
    Json placement;  // Position, Top, Left, Visible
  };
  // A new toolbar stands at 0, 0, 0 and isn't shown.
  for (const Case& c : {Case{"0", "30", "40", {0, 30, 40, true}}, Case{"1", "30", "40", {1, 40, 40, true}},
                        Case{"2", "30", "40", {2, 30, 50, true}}, Case{"3", "30", "40", {3, 30, 50, true}},
                        Case{"4", "30", "40", {4, 40, 40, true}}, Case{"5", "30", "40", {0, 0, 0, false}},
                        Case{"-1", "30", "40", {0, 0, 0, false}}, Case{"70000", "30", "4", {0, 30, 4, true}},
                        Case{"2.5", "12abc", "x", {2, 0, 0, true}}, Case{"1", "2.5", "", {1, 12, 0, true}},
                        Case{"", "99999999999", "7", {0, 0, 7, true}}}) {
    end();  // which stores where the toolbar stands
    store("tbPosition", c.position);
    store("tbTop", c.top);
    store("tbLeft", c.left);
    start();
    const Json bar = tool_bar();
    EXPECT_EQ(Json({bar["Position"], bar["Top"], bar["Left"], bar["Visible"]}), c.placement)
        << c.position << ' ' << c.top;
  }
  session->toolbar({{"Position", "4"}, {"Top", "11"}, {"Left", "-22"}});
  end();
  EXPECT_EQ(stored("tbPosition"), "4");
  EXPECT_EQ(stored("tbTop"), "11");
  EXPECT_EQ(stored("tbLeft"), "-22");

  if (testing_support::on_windows) return;  // whose registry is no file
  const std::string rubbish = "REGEDIT4\r\n\"no key\x01";
  folder.write("settings/user.reg", rubbish);
  start();
  EXPECT_EQ(tool_bar()["Visible"], true);
  end();
  EXPECT_EQ(folder.read("settings/user.reg"), rubbish) << "it may be somebody's";
}

}  // namespace
}  // namespace end_to_end
