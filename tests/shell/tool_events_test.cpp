#include <gtest/gtest.h>

#include "fakes/machine_shop.h"
#include "platform/component_runtime.h"
#include "platform/message_box.h"
#include "shell/Connect.h"

namespace {

using automation::Ref;
using automation::Value;

/// The shop with the add-in connected to it.
class Office : public fakes::MachineShop {
 public:
  Office() {
    platform::set_message_sink([this](auto text, auto, auto) { messages.emplace_back(text); });
    platform::offer_classes([this](std::string_view) -> Ref {
      auto manager = std::make_shared<fakes::Bag>(world, "ShapeManager");
      manager->child("ShapeCache", "ShapeCache");
      return manager;
    });
    add_in = application->child("AddIn", "AddIn");
    add_in->members = {{"Cookie", 5}, {"AddCommand", 32001}};
    auto menus = application->child("Menus", "Menus");
    menus->items.assign(3, std::make_shared<fakes::Bag>(world, "Menu"));
    menus->items[2]->items.assign(17, std::make_shared<fakes::Bag>(world, "MenuItem"));
    menus->items[2]->items[16]->child("SubMenu", "SubMenu");
    document->child("Simulation", "Simulation");
    testing_support::set_variable("QVEspritInstallPath", "/");
    connect.IDTExtensibility2_OnConnection(host::Application(Ref(application)));
    record("OldLatheToolOrientation", 0);
    record("OldOrientation", 0);
    world.writes.clear();
  }
  ~Office() {
    connect.IDTExtensibility2_OnDisconnection();
    platform::offer_classes({});
    platform::set_message_sink({});
    testing_support::set_variable("QVEspritInstallPath", std::nullopt);
    global::ToolImportRunning() = false;
    global::OrientationRestorePending() = false;
  }

  void modify(const std::shared_ptr<fakes::Bag>& which) {
    std::array<Value, 3> args{Value(""), Value(0), Value(Ref(which))};
    tools->hub.raise("OnModify", args);
  }
  void remove(const std::shared_ptr<fakes::Bag>& which) {
    std::array<Value, 1> args{Value(Ref(which))};
    tools->hub.raise("OnDelete", args);
  }
  void ask_for_commands() {
    std::array<Value, 3> args{Value(5), Value(0), Value(false)};
    add_in->hub.raise("OnCommandUI", args);
  }
  std::string recorded() {
    return property("OldLatheToolOrientation")->members["Value"].to_text() + " " +
           property("OldOrientation")->members["Value"].to_text();
  }

  std::vector<std::string> messages;
  std::shared_ptr<fakes::Bag> add_in;
  Connect connect;
};

TEST(ToolEvents, AModifiedToolIsBroughtInLineAndRecordedLater) {
  Office office;
  office.make_model("100.stl");
  office.tool->members["Turret"] = 2;
  office.modify(office.tool);
  EXPECT_EQ(office.shift(), "3 2 -1");
  EXPECT_EQ(office.solids(), "2:100.stl@Lower2");
  EXPECT_EQ(office.recorded(), "0 0");
  EXPECT_TRUE(global::OrientationRestorePending());
  office.ask_for_commands();
  EXPECT_EQ(office.recorded(), "11 2");
  EXPECT_FALSE(global::OrientationRestorePending());
}

TEST(ToolEvents, OnlyTheLastModifiedToolIsRecorded) {
  Office office;
  const auto second = office.add_tool("Second", "Boring#200");
  office.modify(office.tool);
  office.modify(second);
  EXPECT_EQ(office.shift(), "3 2 -1");
  EXPECT_EQ(second->number("ToolShiftX"), 3);
  office.ask_for_commands();
  EXPECT_EQ(office.recorded(), "0 0");
  EXPECT_TRUE(office.world.all_writes().find("Second.CustomProperties.OldOrientation.Value=2") !=
              std::string::npos);
}

TEST(ToolEvents, TheDeferredStepRunsWhateverTheEventIsAbout) {
  const Value x = "x";
  for (std::vector<Value> args : {std::vector<Value>{}, {x, 0, false}, {5, x, false}, {5, 0}}) {
    Office office;
    office.modify(office.tool);
    EXPECT_THROW(office.add_in->hub.raise("OnCommandUI", args), automation::Failure);
    EXPECT_EQ(office.recorded(), "11 2") << args.size();
  }
}

TEST(ToolEvents, AnImportKeepsThemOut) {
  Office office;
  global::ToolImportRunning() = true;
  office.modify(office.tool);
  EXPECT_EQ(office.world.all_writes(), "");
  EXPECT_FALSE(global::OrientationRestorePending());
}

TEST(ToolEvents, WithoutAModelFileTheSolidGoes) {
  for (const bool deleted : {false, true}) {
    Office office;
    office.add_solid(1, "100.stl", 1);
    office.add_solid(2, "100.stl", 2);
    if (deleted) office.make_model("100.stl");  // not looked at
    deleted ? office.remove(office.tool) : office.modify(office.tool);
    EXPECT_EQ(office.solids(), "1:100.stl@Upper1") << deleted;
  }
}

TEST(ToolEvents, ADeletedToolIsNoLongerPending) {
  Office office;
  office.modify(office.tool);
  office.remove(office.tool);
  office.world.writes.clear();
  office.ask_for_commands();
  EXPECT_EQ(office.recorded(), "0 0");
  EXPECT_FALSE(global::OrientationRestorePending());
}

TEST(ToolEvents, TheDeferredStepHoldsItsToolAndEndsOnce) {
  for (const bool deleted : {false, true}) {
    Office office;
    office.modify(office.tool);
    bool inside = false;
    office.world.on_write = [&] {
      if (std::exchange(inside, true)) return;
      deleted ? office.remove(office.tool) : office.modify(office.tool);
      inside = false;
    };
    office.ask_for_commands();
    office.world.on_write = {};
    EXPECT_EQ(office.recorded(), "11 2") << deleted;
    EXPECT_FALSE(global::OrientationRestorePending()) << deleted;
    const std::size_t writes = office.world.writes.size();
    office.ask_for_commands();
    EXPECT_EQ(office.world.writes.size(), writes) << deleted;
  }
}

TEST(ToolEvents, GoOnBehindAFailingStatement) {
  struct Case {
    const char* refused;
    const char* shift;
    const char* solids;
    const char* recorded;
  };
  for (const Case& c : {
           Case{"Tool.Style", "7 8 9", "1:100.stl@Upper2", "11 2"},
           Case{"Tool.CustomProperties.OldLatheToolOrientation.Value", "3 2 -1", "1:100.stl@Upper2", "0 2"},
           Case{"Tool.ToolShiftX", "7 8 9", "1:100.stl@Upper2", "11 2"},
           Case{"Tool.Name", "3 2 -1", "", "11 2"},
           Case{"Tool.Turret", "3 2 -1", "", "11 2"},
           Case{"Tool.Station", "3 2 -1", "", "11 2"},
           Case{"UpperSolids.Add", "3 2 -1", "", "11 2"},
           Case{"Application.Document", "3 2 -1", "", "11 2"},
       }) {
    Office office;
    office.make_model("100.stl");
    office.world.refused = {c.refused};
    office.modify(office.tool);
    office.ask_for_commands();
    office.world.refused.clear();
    EXPECT_EQ(office.shift(), c.shift) << c.refused;
    EXPECT_EQ(office.solids(), c.solids) << c.refused;
    EXPECT_EQ(office.recorded(), c.recorded) << c.refused;
  }
}

TEST(ToolEvents, AnUnsetModelFolderIsToldOnceForAChange) {
  Office office;
  office.messages.clear();
  testing_support::set_variable("QVEspritUserModelsPath", std::nullopt);
  office.world.on_attempt = [](const std::string& access) {
    // another connection may end while the host is asked
    if (access.ends_with(".Language")) global::release_text_reader();
  };
  office.modify(office.tool);
  EXPECT_EQ(office.messages,
            std::vector<std::string>{"Enviorementvariable :QVEspritUserModelsPath not set!"});
  office.remove(office.tool);
  office.ask_for_commands();
  EXPECT_EQ(office.messages.size(), 1U);
}

}  // namespace
