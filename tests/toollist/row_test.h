#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "automation/number.h"
#include "fakes/fake_host.h"
#include "foundation/global.h"
#include "host/application.h"
#include "platform/message_box.h"
#include "tests/platform/temp_folder.h"
#include "toollist/list_file.h"

namespace mQuorvexList {

/// Rows are written to a list file of the test's own, from tools and operations that the host can refuse.
class RowTest : public testing::Test {
 protected:
  RowTest() {
    platform::set_message_sink(
        [this](std::string_view text, std::string_view, platform::Icon) { messages.emplace_back(text); });
    global::AddInName() = "QVEsprit";
    application->child("Configuration", "Configuration")->members["Language"] = 0;
    tools = document->child("Tools", "Tools");
    operations = document->child("Operations", "Operations");
    global::lend_application(lent);
  }
  ~RowTest() override {
    platform::set_message_sink({});
    global::take_application_back(lent);
    global::release_text_reader();
    automation::set_decimal_sign('.');
  }

  /// With the number 3 and the orientations 2 (mill) and 9 (lathe).
  std::shared_ptr<fakes::Bag> add_tool(const std::string& id, int style, int turret, int station) {
    auto tool = tools->add("Tool" + std::to_string(tools->items.size()));
    tool->members = {{"Name", id}, {"Style", style}, {"Number", 3}, {"Turret", turret}, {"Station", station}};
    tool->parameter("ToolID", id);
    tool->parameter("LengthCompRegister", 4.5);
    tool->parameter("Orientation", 2);
    tool->parameter("LatheToolOrientation", 9);
    return tool;
  }
  void add_operation(const automation::Value& tool_id, double duration) {
    const std::string name = "Operation" + std::to_string(operations->items.size());
    auto operation = operations->add(name);
    operation->members["Duration"] = duration;
    operation->child("ToolSettings", name + ".ToolSettings")->parameter("ToolID", tool_id);
  }
  [[nodiscard]] host::Document view() const { return host::Document(document); }
  /// Everything that `action` brings about, in one text.
  template <class Action>
  std::string outcome_of(Action&& action) {
    messages.clear();
    list_file().open(folder.file("rows"));
    std::string failure;
    try {
      action();
    } catch (const automation::Failure& thrown) {
      failure = thrown.what();
    }
    list_file().close();
    std::string outcome = folder.read("rows") + failure;
    for (const std::string& message : messages) outcome += message;
    return outcome;
  }

  testing_support::TempFolder folder;
  std::vector<std::string> messages;
  fakes::World world;
  std::shared_ptr<fakes::Bag> application = std::make_shared<fakes::Bag>(world, "Application");
  std::shared_ptr<fakes::Bag> document = std::make_shared<fakes::Bag>(world, "Document");
  std::shared_ptr<fakes::Bag> tools, operations;

 private:
  host::Application lent{application};
};

}  // namespace mQuorvexList
