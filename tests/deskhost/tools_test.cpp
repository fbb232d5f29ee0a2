#include "deskhost/model/tools.h"

#include <gtest/gtest.h>

#include "tests/deskhost/model_test.h"

namespace deskhost {
namespace {

struct ToolsTest : testing::Test {
  ToolsTest() {
    desk->failure_of_event = [this](std::string_view event, std::string_view text) {
      failures.push_back(std::string(event) + ": " + std::string(text));
    };
    binding = tools->events()->bind([this](Member event, automation::Args args) {
      std::string line(event.name());
      for (const Value& arg : args) {
        line += arg.is(Value::Kind::Object)
                    ? " " + std::dynamic_pointer_cast<Tool>(arg.to_object())->trace_name()
                    : " " + shown(arg);
      }
      heard.push_back(line);
      if (const auto once = std::exchange(on_event, nullptr)) once(args);
    });
  }

  std::shared_ptr<Tool> make(const char* tool_id, std::int32_t tool_class = 1) {
    auto tool = Tool::make(*desk, tool_class);
    write(*tool, "ToolID", tool_id);
    return tool;
  }
  std::string found(const char* tool_id) {
    try {
      return std::dynamic_pointer_cast<Tool>(item(*tools, tool_id))->trace_name();
    } catch (const Failure&) {
      return "none";
    }
  }

  std::vector<std::string> heard, failures;
  std::function<void(automation::Args)> on_event;  // hears one event
  DeskRef desk = std::make_shared<Desk>();
  std::shared_ptr<Document> document = std::make_shared<Document>(desk, "Test");
  std::shared_ptr<Tools> tools = document->tools_ref();
  automation::Binding binding;
};
using Lines = std::vector<std::string>;

TEST_F(ToolsTest, RaisesEventsForWhatHappensToToolsOfTheDocument) {
  const auto tool = make("a");
  write(*tool, "ToolLength", 5);
  EXPECT_EQ(heard, Lines{}) << "the tool stands in no document yet";

  call(*tools, "Add", {Value(tool)});
  write(*tool, "ToolID", "b");
  write(*tool, "ToolID", "b");
  tool->put("ToolShiftX", {}, 1.5);
  EXPECT_THROW(write(*tool, "ToolLength", "long"), Failure);
  tool->put("Flag", {}, true);
  item(*tool, "ToolLength")->put("ValueMarked", {}, true);
  call(*get(*tool, "CustomProperties").to_object(), "Add", {"p", "p", 3, 0});
  call(*tools, "Remove", {"b"});
  write(*tool, "ToolLength", 6);
  EXPECT_EQ(heard, (Lines{"OnCreate Tool(1)", "OnModify Text:a I4:0 Tool(1)", "OnModify Text:b I4:0 Tool(1)",
                          "OnModify Text:b I4:0 Tool(1)", "OnDelete Tool(1)"}));
  EXPECT_EQ(shown(read(*tool, "ToolShiftX")), "R8:1.5");
}

TEST_F(ToolsTest, RaisesNothingForAToolWhoseEventIsBeingDelivered) {
  const auto first = make("a");
  const auto second = make("b");
  tools->append(first);
  tools->append(second);
  on_event = [&](automation::Args) {
    write(*first, "ToolLength", 7);
    write(*second, "ToolLength", 7);
    call(*tools, "Remove", {"a"});
    throw Failure("broken handler");
  };
  write(*first, "ToolLength", 1);
  EXPECT_EQ(heard, (Lines{"OnModify Text:a I4:0 Tool(1)", "OnModify Text:b I4:0 Tool(2)"}));
  EXPECT_EQ(failures, Lines{"OnModify: broken handler"});
  EXPECT_EQ(tools->size(), 1U);
  write(*second, "ToolLength", 2);
  EXPECT_EQ(heard.size(), 3U) << "events are raised again afterwards";
}

TEST_F(ToolsTest, SurvivesAHandlerThatTakesTheToolOut) {
  tools->append(make("a"));
  on_event = [&](automation::Args args) {
    args[0] = Value();
    call(*tools, "Remove", {"a"});
  };
  call(*tools, "Remove", {"a"});
  EXPECT_EQ(heard, Lines{"OnDelete Tool(1)"});
  EXPECT_EQ(tools->size(), 0U);
}

TEST_F(ToolsTest, FindsTheFirstToolOfAnIdThroughAllChanges) {
  const auto one = make("x"), two = make("y"), three = make("x");
  for (const auto& tool : {one, two, three}) call(*tools, "Add", {Value(tool)});
  EXPECT_EQ(found("x"), "Tool(1)");
  write(*two, "ToolID", "x");
  write(*one, "ToolID", "z");
  EXPECT_EQ(found("x"), "Tool(2)");
  EXPECT_EQ(found("y"), "none");
  write(*one, "ToolID", "x");
  EXPECT_EQ(found("x"), "Tool(1)") << "back at its old place in the order";
  EXPECT_EQ(found("X"), "none");
  call(*tools, "Remove", {"x"});
  EXPECT_EQ(found("x"), "Tool(2)");
  EXPECT_EQ(item(*tools, 2), automation::Ref(three));
  EXPECT_THROW(item(*tools, 3), Failure);
  EXPECT_THROW(call(*tools, "Remove", {"nobody"}), Failure);
  EXPECT_THROW(call(*tools, "Add", {Value(two)}), Failure);
  call(*tools, "Add", {Value(one)});
  EXPECT_EQ(item(*tools, 3), automation::Ref(one));
}

TEST_F(ToolsTest, ChangesAllThatAUserAskedForOrNothing) {
  const auto tool = make("a");
  tools->append(tool);
  struct Case {
    std::vector<std::pair<std::string, std::string>> changes;
    const char* refused;
  };
  const Case cases[] = {
      {{{"ToolLength", "5"}, {"ToolDiameter", "wide"}}, "ToolDiameter"},
      {{{"ToolLength", "5"}, {"InsertID", "i"}}, "InsertID"},
      {{{"ToolLength", "5"}, {"Nonsense", "1"}}, "Nonsense"},
  };
  for (const Case& each : cases) {
    try {
      document->user_modify(tool, each.changes);
      ADD_FAILURE() << each.refused << " went through";
    } catch (const RefusedValue& refused) {
      EXPECT_EQ(refused.name, each.refused);
      EXPECT_FALSE(refused.why.empty() || refused.hint.empty());
    }
    EXPECT_TRUE(read(*tool, "ToolLength").is(Value::Kind::Empty));
  }
  EXPECT_EQ(heard, Lines{});
  document->user_modify(tool, {{"toolid", "b"}, {"ToolLength", "5"}});
  EXPECT_EQ(heard, Lines{"OnModify Text:a I4:0 Tool(1)"});
  EXPECT_EQ(found("b"), "Tool(1)");
}

TEST_F(ToolsTest, KnowsTheToolsOfOperations) {
  const auto tool = make("a");
  tools->append(tool);
  document->operations().append("a", 2);
  document->operations().append("gone", 3);
  document->operations().append(std::nullopt, 4);
  const auto settings = [&](std::int32_t n) {
    return get(*item(document->operations(), n), "ToolSettings").to_object();
  };
  EXPECT_EQ(settings(1), automation::Ref(tool));
  EXPECT_EQ(shown(get(*item(*settings(2), "ToolId"), "Value")), "Text:gone");
  EXPECT_THROW(item(*settings(2), "ToolLength"), Failure);
  EXPECT_THROW(get(*item(*settings(3), "ToolID"), "Value"), Failure);
  EXPECT_TRUE(call(*document, "IsToolUsed", {Value(tool)}).to_bool());
  write(*tool, "ToolID", "b");
  EXPECT_FALSE(call(*document, "IsToolUsed", {Value(tool)}).to_bool());
  EXPECT_EQ(shown(get(*item(*settings(1), "ToolID"), "Value")), "Text:a");
}

TEST_F(ToolsTest, OutlivesItsDocumentPieceByPiece) {
  const auto tool = make("a");
  tools->append(tool);
  const auto parameter = item(*tool, "ToolLength");
  const auto properties = get(*tool, "CustomProperties").to_object();
  document->operations().append("a", 1);
  const auto operation = item(document->operations(), 1);
  const auto turret = std::make_shared<Turret>(1);
  document->machine_setup->turrets->items.push_back(turret);
  const auto solid = call(*turret->solids, "Add").to_object();
  document.reset();
  tools.reset();
  parameter->put("Value", {}, 4);
  call(*properties, "Add", {"p", "p", 8, "text"});
  EXPECT_EQ(heard, Lines{}) << "the tool stands in no document any more";
  EXPECT_EQ(shown(get(*item(*get(*operation, "ToolSettings").to_object(), "ToolID"), "Value")), "Text:a");
  solid->put("Name", {}, "s");
  binding.release();
}

TEST(CustomPropertiesTest, ConvertToTheirTypeOrKeepTheOldValue) {
  CustomProperties properties(7);
  struct Case {
    std::int32_t type;
    Value given;
    const char* kept;
  };
  const Case cases[] = {{3, "2.5", "I4:2"}, {3, "", "I4:0"},  {3, 3e9, "I4:0"},   {5, "1.5", "R8:1.5"},
                        {5, "x", "R8:0"},   {8, 4, "Text:4"}, {8, "t", "Text:t"}, {5, Value(), "R8:0"}};
  for (const Case& each : cases) {
    const auto property = call(properties, "Add", {"p", "p", each.type, 0}).to_object();
    try {
      property->put("Value", {}, each.given);
    } catch (const Failure&) {
      EXPECT_STREQ(each.kept, each.type == 3 ? "I4:0" : "R8:0");
    }
    EXPECT_EQ(shown(get(*property, "Value")), each.kept);
    EXPECT_THROW(call(properties, "Add", {"p", "p", each.type, 0}), Failure) << "a second one of that name";
    call(properties, "Remove", {"p"});
  }
  EXPECT_TRUE(get(properties, "Item", {"p"}).is(Value::Kind::Nothing));
  EXPECT_THROW(call(properties, "Add", {"p", "p", 4, 0}), Failure);
}

}  // namespace
}  // namespace deskhost
