#include "import/tool_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "foundation/tool_identity.h"

namespace mQuorvex {
namespace {

using automation::Args;
using automation::Failure;
using automation::Member;
using automation::Value;

struct FakeTool : automation::Object {
  std::string name;
  std::int32_t number = 0;
  int refusals = 0;  // reads that fail before one succeeds

  Value get(Member member, Args /*args*/) override {
    if (refusals > 0) {
      --refusals;
      throw Failure("refused");
    }
    return member == Member("Name") ? Value(name) : Value(number);
  }
  void put(Member /*member*/, Args /*args*/, const Value& /*value*/) override {}
  Value call(Member /*member*/, Args /*args*/) override { return {}; }
};

struct FakeTools : automation::Object {
  std::vector<std::shared_ptr<FakeTool>> tools;

  Value get(Member member, Args args) override {
    if (member == Member("Count")) return static_cast<std::int32_t>(tools.size());
    return automation::Ref(tools.at(static_cast<std::size_t>(args[0].to_int32() - 1)));
  }
  void put(Member /*member*/, Args /*args*/, const Value& /*value*/) override {}
  Value call(Member /*member*/, Args /*args*/) override { return {}; }

  FakeTool& add(const std::string& name, std::int32_t number = 0) {
    tools.push_back(std::make_shared<FakeTool>());
    tools.back()->name = name;
    tools.back()->number = number;
    return *tools.back();
  }

  // The walk that the index stands for: the place of the first match, -1 for none, -2 for a failure.
  [[nodiscard]] int walk(std::string_view id) const {
    for (std::size_t i = 0; i < tools.size(); ++i) {
      if (tools[i]->refusals > 0 || tools[i]->name.empty()) return -2;
      if (tool_identity::behind_last_hash(tools[i]->name) == tool_identity::behind_last_hash(id)) {
        return static_cast<int>(i);
      }
    }
    return -1;
  }
};

int found(ToolIndex& index, const FakeTools& tools, const std::string& id) {
  try {
    const ToolIndex::Found found = index.find(id);
    if (found.tool.is_nothing()) return -1;
    const auto at = std::ranges::find(tools.tools, found.tool.ref());
    EXPECT_EQ(static_cast<std::size_t>(at - tools.tools.begin()), found.position);
    return static_cast<int>(found.position);
  } catch (const Failure&) {
    return -2;
  }
}

TEST(ToolIndex, GivesWhatTheWalkWouldGive) {
  std::mt19937 random(7);
  const auto name = [&] {
    const unsigned kind = random() % 12;
    const std::string ident = std::to_string(random() % 9);
    if (kind == 0) return std::string();
    if (kind == 1) return ident;
    if (kind == 2) return "a#b#" + ident;
    return "D" + std::to_string(random() % 3) + "#" + ident;
  };
  for (int round = 0; round < 300; ++round) {
    const auto tools = std::make_shared<FakeTools>();
    for (unsigned i = random() % 6; i > 0; --i) tools->add(name());
    ToolWalk walk{host::Tools(tools)};
    ToolIndex index(walk);
    for (int step = 0; step < 30; ++step) {
      std::string id = name();
      if (id.empty()) id = "#";
      ASSERT_EQ(found(index, *tools, id), tools->walk(id)) << "round " << round << " step " << step;
      if (tools->tools.empty() || random() % 3 == 0) {
        tools->add(name());
        walk.append(host::Tool(tools->tools.back()));
      } else {
        // The host may show another name than the one that was written.
        const std::size_t at = random() % tools->tools.size();
        tools->tools[at]->name = name();
        index.changed(at);
      }
    }
  }
}

TEST(ToolIndex, FailsOnlyWhereTheWalkReachesARefusal) {
  const auto tools = std::make_shared<FakeTools>();
  tools->add("a#1");
  tools->add("b#2").refusals = 1;
  tools->add("c#3");
  ToolWalk walk{host::Tools(tools)};
  ToolIndex index(walk);
  EXPECT_EQ(found(index, *tools, "x#1"), 0);
  EXPECT_EQ(found(index, *tools, "x#3"), -2);
  EXPECT_EQ(found(index, *tools, "x#3"), 2) << "the refusal was for once";
  EXPECT_EQ(found(index, *tools, ""), -2) << "an empty id has no last piece";
}

TEST(NumbersInUse, FillsGapsFromOneUp) {
  const auto tools = std::make_shared<FakeTools>();
  for (const std::int32_t number : {4, 1, 2, 0, -1, 2}) tools->add("t", number);
  ToolWalk walk{host::Tools(tools)};
  NumbersInUse numbers(walk);
  EXPECT_EQ(numbers.lowest_free(), 3);
  tools->add("t", 3);
  walk.append(host::Tool(tools->tools.back()));
  EXPECT_EQ(numbers.lowest_free(), 5);
  tools->tools[1]->number = 9;
  numbers.changed(1);
  EXPECT_EQ(numbers.lowest_free(), 1);
  tools->tools[2]->number = 9;
  numbers.changed(2);
  tools->tools[1]->number = 1;
  numbers.changed(1);
  EXPECT_EQ(numbers.lowest_free(), 5) << "another tool still has the 2";
}

TEST(NumbersInUse, TakesARefusedNumberForTheCandidate) {
  const auto tools = std::make_shared<FakeTools>();
  tools->add("a", 1);
  tools->add("b", 7).refusals = 1;
  ToolWalk walk{host::Tools(tools)};
  NumbersInUse numbers(walk);
  EXPECT_EQ(numbers.lowest_free(), 3) << "2 is free but counts as the refused tool's";
  EXPECT_EQ(numbers.lowest_free(), 2);
  tools->add("c", 2).refusals = 1000;
  walk.append(host::Tool(tools->tools.back()));
  EXPECT_EQ(numbers.lowest_free(), 3) << "a tool that always refuses must not hold the host";
}

}  // namespace
}  // namespace mQuorvex
