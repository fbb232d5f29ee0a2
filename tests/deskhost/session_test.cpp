#include "deskhost/session/session.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "deskhost/console/user_interface_dump.h"
#include "deskhost/document/document_file.h"
#include "deskhost/model/application.h"
#include "platform/component_runtime.h"
#include "tests/deskhost/fake_addin.h"

namespace deskhost {
namespace {

using automation::Failure;
using automation::Member;
using automation::Ref;
using automation::Value;
using Seen = std::vector<std::string>;

struct SessionTest : testing::Test {
  SessionTest() {
    std::ofstream(file) << R"({"Name":"A.esp","Tools":[{"Class":1,"Parameters":{"ToolID":"T#1"}}]})";
    options.make_addin = [this] { return std::make_shared<FakeAddin>(log); };
    options.on_failure = [this](std::string_view event, std::string_view text) {
      failures.push_back(std::string(event) + ": " + std::string(text));
    };
  }
  ~SessionTest() override { std::filesystem::remove(file); }

  Seen take_seen() { return std::exchange(log.seen, {}); }

  const std::string file = testing::TempDir() + "session_" + std::to_string(::getpid()) + ".json";
  FakeAddinLog log;
  SessionOptions options;
  Seen failures;
};

TEST_F(SessionTest, TheAddInIsTakenDownInOrderAndNoStepComesTwice) {
  const Seen connection{"OnConnection 0", "OnAddInsUpdate", "OnStartupComplete"};
  {
    Session session(options);
    session.connect();
    session.connect();
    EXPECT_EQ(take_seen(), connection);
    session.shutdown();
    session.take_down();
    session.take_down();
    EXPECT_EQ(take_seen(), (Seen{"OnBeginShutdown", "OnDisconnection 0", "released"}));
    EXPECT_EQ(session.gate().left_behind(), "");

    session.connect();
    EXPECT_EQ(take_seen(), connection) << "a second connection of the same session";
    session.release();
    session.take_down();
    EXPECT_EQ(take_seen(), Seen{"released"}) << "a released add-in can't be called";
  }
  EXPECT_EQ(failures, Seen{});
}

TEST_F(SessionTest, FailuresHandedBackAreReportedAndTheSessionGoesOn) {
  log.failing = {"OnConnection", "OnDisconnection", "AfterDocumentOpen", "OnCommand"};
  Session session(options);
  session.connect();
  EXPECT_EQ(failures, Seen{"OnConnection: OnConnection"});
  log.failing.erase("OnConnection");
  session.release();
  session.connect();
  session.open(file);
  session.command(4);
  session.take_down();
  EXPECT_EQ(failures, (Seen{"OnConnection: OnConnection", "AfterDocumentOpen: AfterDocumentOpen",
                            "OnCommand: OnCommand", "OnDisconnection: OnDisconnection"}));
  EXPECT_EQ(session.failures(), 4U);
}

TEST_F(SessionTest, ActionsRaiseTheHostsEventsInItsOrder) {
  Session session(options);
  session.preload(file);
  session.connect();
  take_seen();
  EXPECT_THROW(session.preload(file), WrongUse);
  struct Case {
    std::function<void()> action;
    Seen seen;
  };
  const Case cases[]{
      {[&] { session.open(file); }, {"AfterDocumentClose", "AfterDocumentOpen " + file}},
      {[&] { session.open_new(file); },
       {"BeforeDocumentClose", "AfterDocumentClose", "AfterNewDocumentOpen"}},
      {[&] { session.open_template(file); }, {"AfterDocumentClose", "AfterTemplateOpen " + file}},
      {[&] { session.open(file); }, {"AfterDocumentClose", "AfterDocumentOpen " + file}},
      {[&] { EXPECT_THROW(session.open("missing.json"), DocumentFileError); }, {}},
      {[&] {
         EXPECT_THROW(session.modify("T#2", {{"ToolID", "x"}}), WrongUse);
       },
       {}},
      {[&] {
         EXPECT_THROW(session.modify("T#1", {{"ToolID", "x"}, {"ToolDiameter", "wide"}}), WrongUse);
       },
       {}},
      {[&] {
         session.modify("T#1", {{"ToolDiameter", "8"}, {"ToolID", "N#1"}});
       },
       {"OnModify T#1 0"}},
      {[&] { EXPECT_THROW(session.remove("T#1"), WrongUse); }, {}},
      {[&] { session.remove("N#1"); }, {"OnDelete"}},
      {[&] { EXPECT_TRUE(session.command_ui(2)); }, {"OnCommandUI 7301 2 False False"}},
      {[&] { session.command(2); }, {"OnCommandUI 7301 2 False False", "OnCommand 7301 2"}},
      {[&] { session.foreign(2); }, {"OnCommandUI 7302 2 False False", "OnCommand 7302 2"}},
      {[&] { session.close(); }, {"BeforeDocumentClose", "AfterDocumentClose"}},
      {[&] { EXPECT_THROW(session.close(), WrongUse); }, {}},
      {[&] { EXPECT_THROW(session.simulate(), WrongUse); }, {}},
  };
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    SCOPED_TRACE(i);
    cases[i].action();
    EXPECT_EQ(take_seen(), cases[i].seen);
  }
  session.open(file);
  take_seen();
  session.take_down();
  EXPECT_EQ(take_seen(), (Seen{"OnBeginShutdown", "OnDisconnection 0", "released"}))
      << "the open document is dropped without events";
}

TEST_F(SessionTest, TheUserInterfaceIsWhatAddInAndUserMadeOfIt) {
  options.stale_menu = true;
  Session session(options);
  session.connect();
  session.toolbar({{"Top", "30"}, {"Visible", "true"}});
  EXPECT_THROW(session.toolbar({{"Left", "5"}, {"Top", "x"}}), WrongUse);
  std::ostringstream dump;
  dump_user_interface(session.application(), dump);
  std::string compact = dump.str();
  std::erase_if(compact, [](char c) { return c == ' ' || c == '\n'; });
  EXPECT_EQ(
      compact,
      R"({"Commands":[{"Number":0,"Name":"Fake","Id":32001}],)"
      R"("Menu":[{"Kind":1,"Caption":"Fake","Command":32001},{"Kind":1,"Caption":"QVEsprit","Command":0},)"
      R"({"Kind":0,"Caption":"","Command":0},{"Kind":1,"Caption":"Options","Command":0},)"
      R"({"Kind":0,"Caption":"","Command":0},{"Kind":1,"Caption":"About","Command":0}],)"
      R"("ToolBars":[{"Name":"Fake","Visible":true,"Position":0,"Top":30,"Left":0,"Buttons":)"
      R"([{"Name":"Fake1","Command":32001,"Visible":false,"ScreenTip":"","HelpString":"","Bitmap16":"","Bitmap32":""}]}]})");
}

TEST_F(SessionTest, UserInterfaceObjectsRefuseWhatTheyDoNotHave) {
  Session session(options);
  session.connect();
  const auto& application = session.application();
  const auto menu = std::make_shared<MenuItems>(std::vector<MenuEntry>{{1, "One", 0}, {0, "", 0}});
  const Ref bar = application.tool_bars->bars.front();
  const Ref button = application.tool_bars->bars.front()->buttons.front();
  struct Case {
    Ref object;
    Member member;
    std::vector<Value> args;
  };
  Case calls[]{
      {menu, "Remove", {"Two"}},
      {menu, "Remove", {3}},
      {menu, "Add", {1, "Far", 0, 4}},
      {application.tool_bars, "Remove", {"QVEsprit"}},
      {application.add_in, "AddCommand", {7302, 0, "Foreign"}},
      {bar, "Add", {1, "NoCommand"}},
      {button, "SetBitmaps", {file, "missing.bmp"}},
      {button, "Nonsense", {}},
  };
  for (Case& c : calls) EXPECT_THROW(c.object->call(c.member, c.args), Failure) << c.member.name();
  Case gets[]{{menu, "Item", {0}}, {menu, "Item", {3}}, {bar, "Item", {2}}, {application.menus, "Item", {1}}};
  for (Case& c : gets) EXPECT_THROW(c.object->get(c.member, c.args), Failure) << c.member.name();
  EXPECT_EQ(menu->entries().size(), 2U);

  std::vector<Value> bitmaps{file, file};
  button->call("SetBitmaps", bitmaps);
  std::vector<Value> separator{2};
  menu->call("Remove", separator);
  EXPECT_EQ(menu->entries().front().caption, "One");
}

TEST_F(SessionTest, ClassesAreOfferedToComponentsWhileTheSessionLives) {
  {
    Session session(options);
    session.offer("KnowledgeBase", [] { return std::make_shared<ToolBars>(); });
    for (const char* name :
         {"EspritTools.ToolFactory", "ShapeManager", "A.B.Point", "Vector", "X.KnowledgeBase"}) {
      EXPECT_TRUE(platform::create_object(name)) << name;
    }
    EXPECT_THROW(platform::create_object("Esprit.Hammer"), Failure);

    session.open(file);
    const Ref shapes = platform::create_object("ShapeManager");
    const Ref document = session.gate().wrap(session.application().get("Document", {})).to_object();
    std::vector<Value> tools{document->get("Tools", {}), 0};
    EXPECT_EQ(shapes->call("RestoreToolShapes", tools).to_int32(), 1);
    std::vector<Value> index{1};
    const Ref tool = tools[0].to_object()->get("Item", index).to_object();
    std::vector<Value> shape{tool, 0};
    shapes->call("RefreshToolShape", shape);
    EXPECT_EQ(shape[0].to_object(), tool);

    const Ref factory = platform::create_object("ToolFactory");
    std::vector<Value> creation{"17", 71};
    EXPECT_TRUE(factory->call("Create", creation).to_object());
    creation[0] = 99;
    EXPECT_THROW(factory->call("Create", creation), Failure);
  }
  EXPECT_THROW(platform::create_object("ToolFactory"), Failure);
}

TEST_F(SessionTest, ReferencesThatTheAddInKeepsAreTold) {
  log.leaves_something = true;
  Session session(options);
  session.connect();
  session.take_down();
  EXPECT_EQ(session.gate().left_behind(), "1 reference (Configuration), 1 binding (Application)");
  log.kept.reset();
  log.kept_binding.release();
  EXPECT_EQ(session.gate().left_behind(), "");
}

}  // namespace
}  // namespace deskhost
