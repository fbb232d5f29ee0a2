#include "deskhost/session/gate.h"

#include <gtest/gtest.h>

#include <sstream>

#include "automation/event_hub.h"
#include "deskhost/model/desk_object.h"

namespace deskhost {
namespace {

using automation::Args;
using automation::Binding;
using automation::EventHub;
using automation::Failure;
using automation::id;
using automation::Member;
using automation::Record;
using automation::Ref;
using automation::Value;

/// A model object that remembers what reached it.
class Box : public DeskObject {
 public:
  explicit Box(std::string name) : name_(std::move(name)) {}
  [[nodiscard]] std::string trace_name() const override { return name_; }
  automation::Events* events() noexcept override { return &hub; }

  Value get(Member member, Args args) override {
    if (member.id() == id("Item")) return Value(inner);
    if (member.id() == id("All")) return automation::Array{Value(inner), 1.5};
    return DeskObject::get(member, args);
  }
  void put(Member member, Args args, const Value& value) override {
    if (member.id() != id("Value")) return DeskObject::put(member, args, value);
    std::vector<Value> event{value, false};
    hub.raise("OnChange", event);
    answer = event[1];
    last = value;
  }
  Value call(Member member, Args args) override {
    if (member.id() == id("Look")) last = args[0];          // leaves its argument alone
    if (member.id() == id("Swap")) args[0] = Value(inner);  // gives another object back
    if (member.id() == id("Fill")) args[0].to_record()->at("Id") = "7";
    return std::int32_t{3};
  }

  std::shared_ptr<Box> inner;
  EventHub hub;
  Value last, answer;

 private:
  std::string name_;
};

struct GateTest : testing::Test {
  void open(GateOptions options) {
    box->inner = std::make_shared<Box>("Box.Item(1)");
    gate = make_gate(std::move(options));
    outer = gate->wrap(Value(box)).to_object();
  }
  Value call(Member member, Value argument) {
    args = {std::move(argument)};
    return outer->call(member, args);
  }

  std::shared_ptr<Box> box = std::make_shared<Box>("Box");
  std::shared_ptr<Gate> gate;
  Ref outer;
  std::vector<Value> args;
};

TEST_F(GateTest, TheModelSeesItsOwnObjectsAndTheAddInOnlyWrappedOnes) {
  open({});
  std::vector<Value> index{std::int32_t{1}};
  const Ref item = outer->get("Item", index).to_object();
  EXPECT_NE(item, box->inner);
  EXPECT_EQ(gate->unwrap(Value(item)).to_object(), box->inner);
  const Value all = outer->get("All", {});
  EXPECT_NE(all.to_array()[0].to_object(), box->inner);
  EXPECT_EQ(all.to_array()[1].to_double(), 1.5);

  call("Look", Value(item));
  EXPECT_EQ(box->last.to_object(), box->inner);
  EXPECT_EQ(args[0].to_object(), item) << "an argument that was left alone is the same object";
  call("Swap", Value(outer));
  EXPECT_EQ(gate->unwrap(args[0]).to_object(), box->inner);
  call("Swap", automation::missing);
  EXPECT_NE(args[0].to_object(), box->inner) << "an object in a plain argument is wrapped too";
  outer->put("Value", {}, Value(item));
  EXPECT_EQ(box->last.to_object(), box->inner);
}

TEST_F(GateTest, TheChosenCallsFailWithoutReachingTheModel) {
  struct Case {
    GateOptions options;
    const char* outcome;  // of five calls
  };
  for (const auto& [options, outcome] :
       {Case{{}, "....."}, Case{{.fail_call = 2}, ".x..."}, Case{{.fail_from = 3}, "..xxx"},
        Case{{.fail_call = 1, .fail_from = 5}, "x...x"}}) {
    open(options);
    std::string seen;
    for (int i = 1; i <= 5; ++i) {
      box->last = Value();
      try {
        if (i == 5) {
          gate->create("Box", [&] { return box; });
        } else {
          outer->put("Value", {}, std::int32_t{i});
          EXPECT_EQ(box->last.to_int32(), i);
        }
        seen += '.';
      } catch (const Failure& failure) {
        EXPECT_STREQ(failure.what(), "The host refuses the call");
        EXPECT_TRUE(box->last.is(Value::Kind::Empty));
        seen += 'x';
      }
    }
    EXPECT_EQ(seen, outcome);
    EXPECT_EQ(gate->calls(), 5U);
  }
}

TEST_F(GateTest, TheTraceTellsCallsAndEventsInTheOrderOfTheirBeginning) {
  std::ostringstream trace;
  open({.trace = &trace, .fail_call = 8});
  const Binding binding = outer->events()->bind([&](Member, Args event) {
    std::vector<Value> inner_args{event[0]};
    outer->call("Look", inner_args);
    event[1] = true;
  });
  std::vector<Value> by_name{"A"};
  outer->put("Value", by_name, 10.0);
  EXPECT_TRUE(box->answer.to_bool()) << "what a handler writes comes back to the source";
  call("Swap", automation::missing);
  call("Fill", std::make_shared<Record>(Record{"ToolGroupRecord", {{"Name", "Mill"}, {"Id", ""}}}));
  EXPECT_THROW(outer->get("Nonsense", {}), Failure);
  gate->create("Box", [&] { return box; });
  EXPECT_THROW(gate->create("Crate", [] { return Ref(); }), Failure);
  EXPECT_THROW(outer->get("Item", {}), Failure);
  EXPECT_EQ(
      trace.str(),
      R"({"n":1,"op":"put","on":"Box","member":"Value","args":["A",10.0],"types":["Text","R8"],"result":null}
{"op":"event","on":"Box","member":"OnChange","args":[10.0,false],"types":["R8","Bool"]}
{"n":2,"op":"call","on":"Box","member":"Look","args":[10.0],"types":["R8"],"result":3}
{"n":3,"op":"call","on":"Box","member":"Swap","args":[null],"types":["Missing"],"result":3}
{"n":4,"op":"call","on":"Box","member":"Fill","args":[{"record":"ToolGroupRecord","Name":"Mill","Id":""}],"types":["Record"],"result":3}
{"n":5,"op":"get","on":"Box","member":"Nonsense","args":[],"types":[],"error":"Object doesn't support this property or method"}
{"n":6,"op":"create","on":"Box","member":"","args":[],"types":[],"result":{"object":"Box"}}
{"n":7,"op":"create","on":"Crate","member":"","args":[],"types":[],"error":"Component can't create object"}
{"n":8,"op":"get","on":"Box","member":"Item","args":[],"types":[],"error":"The host refuses the call"}
)");
}

TEST_F(GateTest, WhatTheAddInStillHoldsIsTold) {
  open({});
  std::vector<Value> none;
  Ref item = outer->get("Item", none).to_object();
  Binding binding = item->events()->bind([](Member, Args) {});
  EXPECT_EQ(gate->left_behind(), "2 references (Box, Box.Item(1)), 1 binding (Box.Item(1))");
  item.reset();
  EXPECT_EQ(gate->left_behind(), "1 reference (Box), 1 binding (Box.Item(1))") << "a binding holds no object";
  outer.reset();
  binding.release();
  EXPECT_EQ(gate->left_behind(), "");
}

TEST_F(GateTest, AnObjectThatEndsDuringItsOwnCallIsHarmless) {
  open({});
  Binding binding = outer->events()->bind([&](Member, Args) { outer.reset(); });
  automation::Object* const caller = outer.get();
  box->inner.reset();
  const std::weak_ptr<Box> watched = box;
  box.reset();
  caller->put("Value", {}, 1.0);
  EXPECT_TRUE(watched.expired());
}

}  // namespace
}  // namespace deskhost
