#include "knowledgebase/material_tools.h"

#include "foundation/global.h"
#include "support/worlds.h"

namespace KBM {
namespace {

using fakes::Bag;
using worlds::Random;

void assign_plainly(const host::Tools& M_Tools, const std::string& material, const std::string& id) {
  for (std::int32_t number = 1, count = M_Tools.Count(); number <= count; ++number) {
    const host::ToolParameters tool = M_Tools.Item(number).ToolParameters();
    const std::string tool_id = tool.Item("ToolID").Value().to_text();
    const std::size_t hash = tool_id.find('#');
    if (hash == tool_id.npos || tool_id.find('#', hash + 1) != tool_id.npos) continue;
    if (tool_id.substr(hash + 1) != material) continue;
    tool.Item("ToolMaterial").Value(id);
    tool.Item("ToolMaterial").ValueMarked(true);
  }
}

// Gives the writes of some lines, with what stopped each.
std::string assign(unsigned seed, bool plainly) {
  Random random(seed);
  fakes::World world;
  const auto application = std::make_shared<Bag>(world, "Application");
  const auto tools = application->child("Document", "Document")->child("Tools", "Tools");
  const host::Application lent{application};
  global::lend_application(lent);
  std::vector<std::string> refusable;
  const auto tell_ids = [&] {
    for (const auto& tool : tools->items) {
      tool->parameter("ToolID", tool->members["Name"]);
      tool->parameter("ToolMaterial", "");
    }
  };
  for (int i = random.below(41); i > 0; --i) {
    const auto tool = tools->add("Tool" + std::to_string(i));
    tool->members["Name"] = worlds::tool_name(random);
    for (const char* member : {".Item", ".ToolID.Value", ".ToolMaterial.ValueMarked"}) {
      refusable.push_back(tool->name() + member);
    }
  }
  tell_ids();
  worlds::refuse_some(random, world, refusable, random.of<int>({20, 100, 1000}));
  const int quiet = random.of<int>({2, 5, 1000});
  const bool tools_come = random.once_in(2);
  world.on_write = [&] {
    if (world.writes.back().find("Marked") == std::string::npos || !random.once_in(quiet)) return;
    const std::string in_use = world.writes.back().substr(0, world.writes.back().find('.'));
    worlds::change(random, world, *tools, tools_come, true, in_use);
    tell_ids();
  };
  MaterialTools materials;
  for (int line = 0; line < 12; ++line) {
    const std::string material = std::to_string(random.below(12));
    try {
      plainly ? assign_plainly(host::Tools(tools), material, material) : materials.assign(material, material);
    } catch (const automation::Failure& failure) {
      world.writes.emplace_back(failure.what());
    }
  }
  global::take_application_back(lent);
  return world.all_writes();
}

TEST(MaterialTools, AreThoseOfAPlainWalk) {
  worlds::compare(assign);
}

}  // namespace
}  // namespace KBM
