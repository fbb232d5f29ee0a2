#include "platform/component_runtime.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "automation/failure.h"
#include "platform/files.h"
#include "support/system.h"

namespace platform {
namespace {

using automation::Error;
using automation::Failure;
using automation::Ref;
using automation::Value;

class Offered : public automation::Object {
 public:
  Value get(automation::Member, automation::Args) override { return 7; }
  void put(automation::Member, automation::Args, const Value&) override {}
  Value call(automation::Member, automation::Args) override { return {}; }
};

class ComponentRuntime : public ::testing::Test {
 protected:
  void SetUp() override {
    offer_classes([](std::string_view name) -> Ref {
      if (name == "Sample.Failing") throw Failure(Error::overflow, "too much of it");
      return name == "Sample.Class" ? std::make_shared<Offered>() : nullptr;
    });
  }
  void TearDown() override { offer_classes({}); }
};

std::string text_of_failure(const std::function<void()>& call) {
  try {
    call();
  } catch (const Failure& failure) {
    return failure.what();
  }
  return "";
}

TEST_F(ComponentRuntime, MakesAnObjectThroughAComponent) {
  const auto component = load_component(SAMPLE_COMPONENT);
  const Ref object = component->create("Sample.Class");
  EXPECT_EQ(object->get("Any", {}).to_int32(), 7);
  EXPECT_TRUE(component->can_unload());
  const std::string cannot = text_of(Error::cannot_create_object);
  EXPECT_EQ(text_of_failure([&] { component->create("Sample.Failing"); }), "too much of it");
  EXPECT_EQ(text_of_failure([&] { component->create("Sample.Unknown"); }), cannot);
  EXPECT_EQ(text_of_failure([&] { component->create("Sample.Refused"); }), cannot);
  offer_classes({});
  EXPECT_EQ(text_of_failure([&] { component->create("Sample.Class"); }), cannot);
  EXPECT_EQ(text_of_failure([&] { create_object("Sample.Class"); }), cannot);
}

TEST_F(ComponentRuntime, TellsWhyAComponentCannotBeLoaded) {
  EXPECT_NE(text_of_failure([] { load_component("no/such/component.so"); }).find("component.so"),
            std::string::npos);
  EXPECT_NE(text_of_failure([] { load_component(BROKEN_COMPONENT); }).find("DllCanUnloadNow"),
            std::string::npos);
}

TEST_F(ComponentRuntime, KnowsWhereItLies) {
  EXPECT_EQ(component_name(), "test_platform");
  EXPECT_TRUE(file_exists(component_folder() + "\\TEST_platform" + testing_support::program_ending));
}

}  // namespace
}  // namespace platform
