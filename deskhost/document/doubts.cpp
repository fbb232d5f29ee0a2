#include "deskhost/document/doubts.h"

#include <unordered_map>

namespace deskhost {
namespace {

using Doubts = std::vector<std::string>;

std::string item(const char* collection, std::size_t place) {
  return std::string(collection) + "[" + std::to_string(place) + "]";
}

void doubt_solids(const Document& document, Doubts& doubts) {
  if (!document.machine_setup) return;
  const auto& turrets = document.machine_setup->turrets->items;
  for (std::size_t t = 0; t < turrets.size(); ++t) {
    const auto& solids = turrets[t]->solids->items;
    const std::size_t stations = turrets[t]->stations->items.size();
    for (std::size_t s = 0; s < solids.size(); ++s) {
      const std::int32_t station = solids[s]->station_place;
      if (station <= 0 || static_cast<std::size_t>(station) <= stations) continue;
      doubts.push_back("MachineSetup." + item("Turrets", t) + "." + item("Solids", s) +
                       ".Station: the turret has no station " + std::to_string(station));
    }
  }
}

void doubt_tools(const Document& document, Doubts& doubts) {
  std::unordered_map<std::string, std::size_t> seen;
  const auto& tools = document.tools().all();
  for (std::size_t place = 0; place < tools.size(); ++place) {
    const std::string name = tools[place]->name();
    const auto [first, is_new] = seen.try_emplace(name, place);
    if (is_new || name.empty()) continue;
    doubts.push_back(item("Tools", place) + ".Parameters.ToolID: " + item("Tools", first->second) + " is \"" +
                     name + "\" too");
  }
}

}  // namespace

std::vector<std::string> doubts_about(const Document& document) {
  Doubts doubts;
  if (document.machine_type != 1 && document.machine_type != 2) {
    doubts.push_back("MachineType: there is no machine of type " + std::to_string(document.machine_type) +
                     "; 1 has turrets, 2 is a mill");
  }
  if (document.unit_system != inches && document.unit_system != millimetres) {
    doubts.push_back("UnitSystem: there are no units of number " + std::to_string(document.unit_system) +
                     "; 70 are inches, 71 millimetres");
  }
  doubt_solids(document, doubts);
  doubt_tools(document, doubts);
  return doubts;
}

}  // namespace deskhost
