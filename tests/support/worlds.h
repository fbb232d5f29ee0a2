#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "fakes/fake_host.h"

/// Random worlds in which the program and a plain walk, written once more without anything kept, have to come
/// to the same. QVESPRIT_WORLDS tells how many, QVESPRIT_SEED which one is the first.
namespace worlds {

class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}
  int below(int end) { return std::uniform_int_distribution<int>(0, end - 1)(engine_); }
  bool once_in(int n) { return below(n) == 0; }
  template <class T>
  const T& of(const std::vector<T>& choices) {
    return choices[static_cast<std::size_t>(below(static_cast<int>(choices.size())))];
  }

 private:
  std::mt19937 engine_;
};

inline unsigned setting(const char* variable, unsigned otherwise) {
  const char* value = std::getenv(variable);
  return value ? static_cast<unsigned>(std::strtoul(value, nullptr, 10)) : otherwise;
}

/// `run(seed, plainly)` gives all that came of a world.
template <class Run>
void compare(Run&& run) {
  const unsigned first = setting("QVESPRIT_SEED", 1);
  const unsigned end = first + setting("QVESPRIT_WORLDS", 500);
  for (unsigned seed = first; seed != end; ++seed) {
    ASSERT_EQ(run(seed, false), run(seed, true)) << "QVESPRIT_SEED=" << seed;
  }
}

/// Names that clash: equal identifiers behind other prefixes, several "#", none.
inline std::string tool_name(Random& random) {
  const std::string ident = std::to_string(random.below(12));
  return random.of<std::string>({"D1#" + ident, "D2#" + ident, "a#b#" + ident, ident, "D1#" + ident + "x"});
}

/// Lets some of the named accesses fail: once, several times, for ever.
inline void refuse_some(Random& random, fakes::World& world, const std::vector<std::string>& names, int n) {
  for (const std::string& name : names) {
    if (random.once_in(n)) world.refusals[name] = random.of<int>({1, 1, 2, 3, 1000000});
  }
}

/// What somebody else does to a collection of tools while the program is at work: one comes or goes, or one
/// that can be known by its own name gets another, or (where they `may_swap`) two of these change their
/// places, unless something is refused, as the candidate that a refused number counts for depends on its
/// place. A name that is given is one that nobody looks for: that one would have to be asked of every tool,
/// each time. Two tools change places on the same side of the one `in_use`: a walk knows both or neither. In
/// a world either tools come or tools go, as one that goes could hide one that has come.
inline void change(Random& random, fakes::World& world, fakes::Bag& tools, bool tools_come, bool may_swap,
                   const std::string& in_use = {}) {
  const auto any = [&] { return tools.items.begin() + random.below(static_cast<int>(tools.items.size())); };
  const int kind = random.below(5);
  if (tools.items.empty()) return;
  if (kind == 0 && tools_come) {
    auto tool = std::make_shared<fakes::Bag>(world, "Extra" + std::to_string(tools.items.size()));
    tool->members = tools.items.front()->members;
    tool->named = tools.items.front()->named;
    tool->members["Name"] = tool_name(random);
    tool->members["Number"] = random.below(12);
    tools.items.insert(random.once_in(2) ? tools.items.begin() : tools.items.end(), tool);
    return;
  }
  const auto one = any();
  const auto ident = [](const std::shared_ptr<fakes::Bag>& tool) {
    const std::string name = tool->members["Name"].to_text();
    return name.substr(name.rfind('#') + 1);
  };
  const auto is_plain = [&](const std::shared_ptr<fakes::Bag>& tool) {
    int same = 0;
    for (const auto& other : tools.items) same += ident(other) == ident(tool) ? 1 : 0;
    for (const auto& [name, times] : world.refusals) {
      if (name.starts_with(tool->name() + ".")) return false;
    }
    return same == 1 && !ident(tool).empty() && !tool->name().starts_with("New");
  };
  if (kind <= 1) {
    if (!tools_come) tools.items.erase(one);
  } else if (kind <= 3 && is_plain(*one)) {
    (*one)->members["Name"] = "F#fresh" + std::to_string(random.below(1000000000));
  } else if (const auto other = any();
             may_swap && world.refusals.empty() && is_plain(*one) && is_plain(*other)) {
    const auto is_used = [&](const std::shared_ptr<fakes::Bag>& tool) { return tool->name() == in_use; };
    const auto [first, last] = std::minmax(one, other);
    if (std::none_of(first, last + 1, is_used)) std::swap(*one, *other);
  }
}

}  // namespace worlds
