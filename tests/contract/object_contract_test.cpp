// What `automation::Object` promises, by every way that there is to an object.

#include <gtest/gtest.h>

#include "contract/sample.h"

namespace contract {
namespace {

using automation::Array;
using automation::Binding;
using automation::Error;
using automation::Failure;
using automation::Member;
using automation::Record;
using automation::Ref;
using automation::Value;
using Kind = Value::Kind;

std::shared_ptr<Record> record(const std::string& name) {
  auto made = std::make_shared<Record>();
  made->type = "SampleRecord";
  made->members = {{"Name", name}, {"Id", ""}, {"Code", std::int16_t{-3}}, {"Count", 70000}, {"Factor", 1.5}};
  return made;
}

class ObjectContract : public ::testing::TestWithParam<Way> {
 protected:
  Value call(Member member, std::vector<Value> given = {}) {
    args = std::move(given);
    return subject->call(member, args);
  }

  std::shared_ptr<Sample> sample = [] {
    auto made = std::make_shared<Sample>("Sample");
    for (const char* name : {"zero", "one", "two"}) made->children.push_back(std::make_shared<Sample>(name));
    return made;
  }();
  Ref subject = GetParam().across(sample);
  std::vector<Value> args;
};

/// A value's kind and content as one text, arrays and records with theirs.
std::string shown(const Value& value) {
  std::string text = name_of(value.kind());
  if (value.is_number() || value.is(Kind::Text)) text += " " + value.to_text();
  if (value.is(Kind::Object)) text += " " + value.to_object()->get("Name", {}).to_text();
  if (value.is(Kind::Array)) {
    for (const Value& element : value.to_array()) text += " [" + shown(element) + "]";
  }
  if (value.is(Kind::Record)) {
    text += " " + value.to_record()->type;
    for (const auto& [name, member] : value.to_record()->members) text += " " + name + "=" + shown(member);
  }
  return text;
}

TEST_P(ObjectContract, CarriesEveryKindThereAndBack) {
  const std::vector<Value> values{
      {},
      automation::nothing,
      true,
      false,
      std::int16_t{-32768},
      std::int32_t{2147483647},
      0.1,
      -1e300,
      "",
      "Fräser Ø1.5 刀具 \xF0\x9F\x94\xA7",
      std::string("a\0b", 3),
      Value(sample->children[1]),
      record("Mill"),
      Array{},
      Array{1, "two", Array{3.5, Value()}, Value(sample->children[2])},
      Array{record("a"), record("b")},
  };
  for (const Value& value : values) {
    const std::string before = shown(value);
    SCOPED_TRACE(before);
    EXPECT_EQ(shown(call("Echo", {value})), before);
    EXPECT_EQ(shown(args[0]), before) << "the argument itself";
    EXPECT_EQ(call("Kind", {value}).to_text(), name_of(value.kind()));
    subject->put("Setting", {}, value);
    EXPECT_EQ(shown(sample->last_put), before);
    EXPECT_EQ(shown(subject->get("Last", {})), before);
  }
  EXPECT_EQ(call("Kind", {automation::missing, 1}).to_text(), "Missing");
}

TEST_P(ObjectContract, BringsChangedArgumentsBack) {
  const std::vector<Value> values{Value(), 7, "text", 2.5, Value(sample->children[0]), automation::nothing,
                                  true};
  for (const Value& from : values) {
    for (const Value& to : values) {
      call("Replace", {from, to});
      EXPECT_EQ(shown(args[0]), shown(to)) << "from " << shown(from);
    }
  }
  const auto given = record("Mill");
  call("Fill", {given});
  EXPECT_EQ(given->at("Id").to_text() + given->at("Name").to_text(), "7Mill");
  EXPECT_EQ(given->at("Factor").to_double(), 0.25);
}

TEST_P(ObjectContract, TellsGetAndCallAndPutApart) {
  EXPECT_EQ(subject->get("Both", {}).to_text(), "got");
  EXPECT_EQ(call("BOTH").to_text(), "called");
  EXPECT_EQ(subject->get("name", {}).to_text(), "Sample") << "regardless of case";
  std::vector<Value> index{2};
  EXPECT_EQ(shown(subject->get("Item", index)), "Object two");
  subject->put("Setting", index, "x");
  EXPECT_EQ(sample->last_put.to_text(), "2=x");
  EXPECT_EQ(shown(subject->get("_NewEnum", {})), "Array [Object zero] [Object one] [Object two]");
  sample->children.clear();
  EXPECT_EQ(shown(subject->get("_NewEnum", {})), "Array");
}

TEST_P(ObjectContract, HandsFailuresOnWithNumberAndText) {
  const auto failure = [&](const auto& attempt) -> std::pair<Error, std::string> {
    try {
      attempt();
    } catch (const Failure& caught) {
      return {caught.error(), caught.what()};
    } catch (const std::exception& other) {
      return {Error::internal_error, text_of(Error::internal_error) + std::string(": ") + other.what()};
    }
    return {Error::none, "none"};
  };
  const auto of = [](Error error) { return std::pair<Error, std::string>(error, text_of(error)); };
  EXPECT_EQ(failure([&] { call("Refuse"); }), of(Error::permission_denied));
  EXPECT_EQ(failure([&] { call("Complain"); }),
            std::pair(Error::none, std::string("Fräser \"Ø1.5\" fehlt…")));
  EXPECT_EQ(failure([&] { call("Break"); }),
            std::pair(Error::internal_error, std::string("Internal error: inside")));
  EXPECT_EQ(failure([&] { call("NoSuchMember"); }), of(Error::no_such_member));
  EXPECT_EQ(failure([&] { subject->get("NoSuchMember", {}); }), of(Error::no_such_member));
  EXPECT_EQ(failure([&] { subject->put("Name", {}, 1); }), of(Error::no_such_member));
  EXPECT_EQ(failure([&] { subject->get("Item", {}); }), of(Error::argument_missing));
}

TEST_P(ObjectContract, DeliversEventsWhileTheyAreBound) {
  std::string heard;
  automation::Events* events = subject->events();
  ASSERT_NE(events, nullptr);
  Binding binding = events->bind([&](Member event, std::span<Value> event_args) {
    heard += std::string(event.name()) + "(" + shown(event_args[0]) + ")";
    event_args[1] = true;
  });
  EXPECT_TRUE(call("Raise", {"x"}).to_bool()) << "what the handler changed";
  call("Raise", {Value(sample->children[1])});
  EXPECT_EQ(heard, "OnChange(Text x)OnChange(Object one)");

  Binding failing = events->bind([](Member, std::span<Value>) { throw Failure(Error::overflow); });
  EXPECT_THROW(call("Raise", {1}), Failure);
  failing = events->bind([&](Member, std::span<Value>) { failing.release(); });  // ends itself
  EXPECT_NO_THROW(call("Raise", {2}));
  heard.clear();
  binding.release();
  binding.release();
  EXPECT_FALSE(call("Raise", {3}).to_bool());
  EXPECT_EQ(heard, "");
}

TEST_P(ObjectContract, HoldsTheObjectAndLetsItGo) {
  const std::weak_ptr<Sample> watched = sample;
  {
    const Binding bound = subject->events()->bind([](Member, std::span<Value>) {});
    const Value back = call("Echo", {Value(subject)});
    args.clear();
    sample.reset();
    EXPECT_FALSE(watched.expired());
  }
  subject.reset();
  EXPECT_TRUE(watched.expired());
}

std::vector<Way> all_ways() {
  std::vector<Way> ways = common_ways();
  for (Way& way : system_ways()) ways.push_back(std::move(way));
  return ways;
}

INSTANTIATE_TEST_SUITE_P(ByEveryWay, ObjectContract, ::testing::ValuesIn(all_ways()),
                         [](const auto& way) { return std::string(way.param.name); });

}  // namespace
}  // namespace contract
