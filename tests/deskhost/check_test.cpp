// What the check's own judgement rests on: two traces compared, and a component that breaks its promises.

#include <gtest/gtest.h>

#include "deskhost/check/calls.h"
#include "deskhost/check/judge.h"
#include "deskhost/check/zones.h"

using namespace deskhost::check;

namespace {

std::string line(std::string_view op, std::string_view on, std::string_view member, std::string_view args,
                 std::string_view end) {
  return "{\"n\":1,\"op\":\"" + std::string(op) + "\",\"on\":\"" + std::string(on) + "\",\"member\":\"" +
         std::string(member) + "\",\"args\":[" + std::string(args) + "],\"types\":[]," + std::string(end) +
         "}\n";
}
std::string object(std::string_view name) {
  return "\"result\":{\"object\":\"" + std::string(name) + "\"}";
}
const std::string nothing = "\"result\":null";
const std::string refused = "\"error\":\"The host refuses the call\"";

const std::string get_length = line("get", "Tool(1)", "Item", "\"ToolLength\"", object("Tool(1).ToolLength"));
const std::string put_length = line("put", "Tool(1).ToolLength", "Value", "1", nothing);
const std::string put_x = line("put", "Tool(1)", "ToolShiftX", "1", nothing);
const std::string put_y = line("put", "Tool(1)", "ToolShiftY", "1", nothing);
const std::string refused_length = line("get", "Tool(1)", "Item", "\"ToolLength\"", refused);

const Scenario scenario{"sample", "", "", nullptr, nullptr, nullptr, "OnConnection"};

struct JudgeCase {
  const char* name;
  Zone zone;
  std::string behind;  ///< what runs behind the refused first call of: length, x, y
  std::vector<std::string> failures, messages;
  bool is_sound;
};

std::vector<std::string> judged(const JudgeCase& c) {
  SoundRun sound{&scenario, {calls_of(get_length + put_length + put_x + put_y), {}, {}}, {}, {0, 1, 2, 3}};
  sound.zones.assign(4, c.zone);
  return judge(sound, {calls_of(refused_length + c.behind), c.messages, c.failures}, 0, false);
}

}  // namespace

TEST(Check, JudgesWhatRunsBehindARefusedCall) {
  const std::string text = "The host refuses the call";
  const std::string failure = "OnConnection: " + text;
  const std::vector<JudgeCase> cases{
      {"every other statement", Zone::skipped, put_x + put_y, {}, {}, true},
      {"a statement is left out", Zone::skipped, put_y, {}, {}, false},
      {"all are left out", Zone::skipped, "", {}, {}, false},
      {"one too many", Zone::skipped, put_x + put_y + put_y, {}, {}, false},
      {"skipped and handed on", Zone::skipped, put_x + put_y, {failure}, {}, false},
      {"skipped and told", Zone::skipped, put_x + put_y, {}, {text}, false},
      {"ends and hands on", Zone::handed_on, "", {failure}, {}, true},
      {"ends without a word", Zone::handed_on, "", {}, {}, false},
      {"another event's failure", Zone::handed_on, "", {"OnCommand: " + text}, {}, false},
      {"another text", Zone::handed_on, "", {"OnConnection: Type mismatch"}, {}, false},
      {"goes on behind the end", Zone::handed_on, put_x, {failure}, {}, false},
      {"ends with a message", Zone::reported, "", {}, {text + " file"}, true},
      {"told twice", Zone::reported, "", {}, {text, text}, false},
      {"not told", Zone::reported, "", {}, {}, false},
  };
  for (const JudgeCase& c : cases) EXPECT_EQ(judged(c).empty(), c.is_sound) << c.name;
}

TEST(Check, FindsWhatACallsResultIsNeededFor) {
  const auto calls = calls_of(get_length + put_length + put_x + get_length + put_length);
  EXPECT_EQ(dependents(calls, 0), (std::vector<bool>{false, true, false, false, false}));
  EXPECT_EQ(dependents(calls, 2), std::vector<bool>(5, false));
}

TEST(Check, ComparesTwoRuns) {
  const auto clean = calls_of(get_length + put_length + put_x + put_y);
  const Difference found = difference(clean, calls_of(get_length + put_x + put_x + put_y), 1);
  EXPECT_EQ(found.missing, std::vector<std::size_t>{1});
  EXPECT_EQ(found.extra.size(), 1U);
  EXPECT_TRUE(difference(clean, clean, 0).missing.empty());
}
