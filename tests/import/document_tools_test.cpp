#include "import/document_tools.h"

#include <algorithm>
#include <functional>
#include <optional>

#include "formats/tool_identity.h"
#include "foundation/failures.h"
#include "support/worlds.h"

namespace mQuorvex {
namespace {

using fakes::Bag;
using worlds::Random;

/// The two searches as plain walks.
class PlainWalks {
 public:
  explicit PlainWalks(host::Tools M_Tools) : M_Tools_(std::move(M_Tools)) {}
  const host::Tools& M_Tools() { return M_Tools_; }
  void changed_found() {}
  void added(const host::Tool&) {}

  host::Tool FindToolById(const std::string& id) {
    for (std::int32_t number = 1, count = M_Tools_.Count(); number <= count; ++number) {
      const host::Tool tool = M_Tools_.Item(number);
      if (identifier(tool.Name()) == identifier(id)) return tool;
    }
    return {};
  }
  double lowest_free_number() {
    std::int32_t candidate = 1;
    std::map<automation::Ref, int> refusals;  // in a row
    const std::function<bool()> is_taken = [&] {
      for (std::int32_t number = 1, count = M_Tools_.Count(); number <= count; ++number) {
        const host::Tool tool = M_Tools_.Item(number);
        int& refused = refusals[tool.ref()];
        if (refused == 2) continue;
        try {
          const std::int32_t its_number = tool.Number();
          refused = 0;
          if (its_number == candidate) return true;
        } catch (const automation::Failure&) {
          if (++refused == 1) return true;
        }
      }
      return false;
    };
    while (is_taken()) ++candidate;
    return candidate;
  }

 private:
  static std::string identifier(const std::string& name) {
    if (name.empty()) throw automation::Failure("empty");
    return name.substr(name.rfind('#') + 1);
  }
  host::Tools M_Tools_;
};

std::shared_ptr<Bag> make_tool(fakes::World& world, const std::string& bag, const std::string& name,
                               int number) {
  auto tool = std::make_shared<Bag>(world, bag);
  tool->members = {{"Name", name}, {"Number", number}};
  return tool;
}

/// An import as far as the two searches go: lines that find or make tools and write to them, in a document in
/// which things are refused and changed. Gives what came of it.
template <class Searches>
std::string import(unsigned seed) {
  Random random(seed);
  fakes::World world;
  const auto document = std::make_shared<Bag>(world, "Tools");
  const auto other = std::make_shared<Bag>(world, "Others");
  std::vector<std::string> refusable{"Tools.Count"};
  for (int i = random.below(41); i > 0; --i) {
    const std::string bag = "Tool" + std::to_string(i);
    const std::string name = random.once_in(40) ? "" : worlds::tool_name(random);
    document->items.push_back(make_tool(world, bag, name, random.below(25)));
    refusable.insert(refusable.end(), {bag + ".Name", bag + ".Number"});
  }
  std::shared_ptr<Bag> active = document;
  worlds::refuse_some(random, world, refusable, random.of<int>({8, 40, 1000}));
  const int quiet = random.of<int>({2, 6, 1000});
  const bool tools_come = random.once_in(2);
  bool is_changed = false;    // one change a line can be seen; of two the second may hide the first
  std::shared_ptr<Bag> tool;  // of the line
  bool is_new = false;
  const auto write = [&] {
    if (!is_changed && active == document && random.once_in(quiet)) {
      worlds::change(random, world, *document, tools_come, is_new);  // all are known where one was new
      is_changed = true;
    }
    if (random.once_in(40 * quiet)) active = other;
  };

  Searches searches{host::Tools(document)};
  std::string log;
  for (int line = 0; line < 30; ++line) {
    const std::string id = worlds::tool_name(random);
    is_changed = false;
    tool.reset();
    double number = 0;
    try {
      tool = std::dynamic_pointer_cast<Bag>(searches.FindToolById(id).ref());
      if (!tool && random.once_in(2)) number = searches.lowest_free_number();
    } catch (const automation::Failure&) {
      log += "failed ";
      continue;
    }
    is_new = !tool;
    if (is_new) tool = make_tool(world, "New" + std::to_string(line), "", static_cast<int>(number));
    log += (is_new ? "new " + std::to_string(number) : tool->name()) + ' ';
    write();
    tool->members["Name"] = random.once_in(10) ? worlds::tool_name(random) : id;
    write();
    host::Tool in_document;
    skip_failure([&] { in_document = searches.M_Tools().Item(id); });
    if (in_document.is_nothing()) {
      const bool is_added = std::ranges::find(active->items, tool) == active->items.end();
      if (is_added) active->items.push_back(tool);
      write();
      if (is_added && random.once_in(10)) tool->members["Number"] = random.below(25);
      skip_failure([&] { in_document = searches.M_Tools().Item(id); });
      if (is_added) searches.added(in_document);
    }
    write();
    if (!is_new) searches.changed_found();
  }
  for (const auto& left : document->items) log += left->name() + "=" + left->members["Name"].to_text() + " ";
  return log;
}

TEST(DocumentTools, FindWhatPlainWalksFind) {
  worlds::compare([](unsigned seed, bool plainly) {
    return plainly ? import <PlainWalks>(seed) : import <DocumentTools>(seed);
  });
}

TEST(DocumentTools, NumbersFillGapsFromOneUp) {
  fakes::World world;
  const auto tools = std::make_shared<Bag>(world, "Tools");
  const auto add = [&](int number, int refusals = 0) {
    const std::string bag = "Tool" + std::to_string(tools->items.size());
    tools->items.push_back(make_tool(world, bag, "t", number));
    world.refusals[bag + ".Number"] = refusals;
  };
  for (const int number : {4, 1, 2, 0, -1, 2}) add(number);
  DocumentTools searches{host::Tools(tools)};
  EXPECT_EQ(searches.lowest_free_number(), 3);
  add(3, 1);
  EXPECT_EQ(searches.lowest_free_number(), 5) << "the refusal was met while the candidate was 3";
  add(5, 1);
  EXPECT_EQ(searches.lowest_free_number(), 6) << "asked once more, the tool tells its number";
  add(7, 1000);
  EXPECT_EQ(searches.lowest_free_number(), 7) << "one refusal counts, and no tool holds the host for ever";
}

// Beside many tools a line costs no more than beside few.
TEST(DocumentTools, AskEachToolOnce) {
  fakes::World world;
  const auto tools = std::make_shared<Bag>(world, "Tools");
  for (int i = 1; i <= 100; ++i) tools->items.push_back(make_tool(world, "T", "D#" + std::to_string(i), i));
  DocumentTools searches{host::Tools(tools)};
  for (int line = 0; line < 50; ++line) {
    EXPECT_TRUE(searches.FindToolById("x#new").is_nothing());
    EXPECT_EQ(searches.lowest_free_number(), 101);
    EXPECT_FALSE(searches.FindToolById("x#50").is_nothing());
    searches.changed_found();
  }
  EXPECT_EQ(world.reads["T.Number"], 100);
  EXPECT_EQ(world.reads["T.Name"], 100 + 49 + 50);
}

}  // namespace
}  // namespace mQuorvex
