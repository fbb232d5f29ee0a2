#include "automation/value.h"

#include <gtest/gtest.h>

#include <array>

#include "automation/event_hub.h"
#include "automation/object.h"

namespace automation {
namespace {

TEST(Value, ConvertsByTheRulesOfAutomation) {
  EXPECT_EQ(Value().to_text(), "");
  EXPECT_EQ(Value().to_int32(), 0);
  EXPECT_EQ(Value(true).to_double(), -1);
  EXPECT_EQ(Value(true).to_text(), "True");
  EXPECT_EQ(Value("2.5").to_int32(), 2);
  EXPECT_EQ(Value(" 3 ").to_int16(), 3);
  EXPECT_TRUE(Value("tRUE").to_bool());
  EXPECT_TRUE(Value("-7").to_bool());
  EXPECT_FALSE(Value("0").to_bool());
  EXPECT_EQ(Value(nothing).to_object(), nullptr);
  EXPECT_TRUE(Value(Ref()).is(Value::Kind::Nothing));

  const auto error_of = [](const auto& conversion) {
    try {
      conversion();
    } catch (const Failure& failure) {
      return failure.error();
    }
    return Error::none;
  };
  EXPECT_EQ(error_of([] { (void)Value("12abc").to_int32(); }), Error::type_mismatch);
  EXPECT_EQ(error_of([] { (void)Value("").to_double(); }), Error::type_mismatch);
  EXPECT_EQ(error_of([] { (void)Value("70000").to_int16(); }), Error::overflow);
  EXPECT_EQ(error_of([] { (void)Value(nothing).to_text(); }), Error::object_not_set);
  EXPECT_EQ(error_of([] { (void)Value(missing).to_text(); }), Error::type_mismatch);
  EXPECT_EQ(error_of([] { (void)Value("x").to_object(); }), Error::object_required);
  EXPECT_EQ(error_of([] { (void)Value("yes").to_bool(); }), Error::type_mismatch);
}

TEST(Value, ComparesNumbersAsNumbersAndTextsAsTexts) {
  EXPECT_TRUE(equal(Value(1.0), Value(std::int16_t{1})));
  EXPECT_TRUE(equal(Value(true), Value(-1)));
  EXPECT_TRUE(equal(Value("a"), Value("a")));
  EXPECT_FALSE(equal(Value("a"), Value("A")));
  EXPECT_FALSE(equal(Value("1"), Value(1)));
  EXPECT_TRUE(equal(Value(), Value(0)));
  EXPECT_TRUE(equal(Value(""), Value()));
  EXPECT_FALSE(equal(Value(), Value("0")));
  EXPECT_THROW((void)equal(Value(nothing), Value(1)), Failure);
  EXPECT_THROW((void)equal(Value(1), Value(missing)), Failure);
}

TEST(Member, IsTheSameRegardlessOfCase) {
  EXPECT_EQ(Member("ToolID"), Member("ToolId"));
  EXPECT_NE(Member("ToolID"), Member("ToolIDs"));
  EXPECT_EQ(Member::named("item"), Member("Item"));
}

TEST(Events, ReachABindingExactlyWhileItLives) {
  auto hub = std::make_unique<EventHub>();
  int heard = 0;
  Binding second;
  Binding first = hub->bind([&](Member event, std::span<Value> args) {
    ++heard;
    EXPECT_EQ(event, Member("OnModify"));
    args[0] = Value(false);
    second.release();  // a handler that ends the next one in the middle of a round
  });
  second = hub->bind([&](Member, std::span<Value>) { heard += 100; });
  std::array<Value, 1> args{Value(true)};
  hub->raise("OnModify", args);
  EXPECT_EQ(heard, 1);
  EXPECT_FALSE(args[0].to_bool());
  first = Binding();
  hub->raise("OnModify", args);
  EXPECT_EQ(heard, 1);
  first = hub->bind([](Member, std::span<Value>) { throw Failure(Error::overflow); });
  EXPECT_THROW(hub->raise("OnModify", args), Failure);
  hub.reset();
  first.release();  // the source is gone already
}

}  // namespace
}  // namespace automation
