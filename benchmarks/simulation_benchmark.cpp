// The growth of a simulation's start: the event in which the solids of tools are turned, with a solid for
// each tool.

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "component/connect_object.h"
#include "deskhost/session/session.h"
#include "platform/message_box.h"

namespace {

nlohmann::json document_of(int tools) {
  constexpr int stations = 24;
  nlohmann::json document{{"Name", "large.esp"}};
  auto& turret = document["MachineSetup"]["Turrets"][0] = {{"Name", "Upper"}};
  for (int station = 1; station <= stations; ++station) turret["Stations"].push_back({{"Number", station}});
  auto& scene = document["Simulation"];
  scene["SimTurrets"][0] = {{"Name", "Upper"}, {"Origin", {1, 2, 3}}};
  for (int tool = 0; tool < tools; ++tool) {
    const std::string id = std::to_string(1000000 + tool);
    document["Tools"].push_back({{"Class", 16},
                                 {"Parameters",
                                  {{"ToolStyle", 16},
                                   {"ToolID", "Turning#" + id},
                                   {"TurretID", 1},
                                   {"StationID", 1 + tool % stations},
                                   {"LatheToolOrientation", 13},
                                   {"CustomSetting6", "11"}}}});
    scene["SimTools"].push_back({{"Name", "Turning#" + id}});
    scene["SimSolids"].push_back({{"Name", id + ".stl"}});
  }
  return document;
}

void start_of_simulation(benchmark::State& state) {
  const int tools = static_cast<int>(state.range(0));
  const auto folder = std::filesystem::temp_directory_path();
  const auto file = folder / "qvesprit-simulation-benchmark.json";
  setenv("QVEspritInstallPath", (folder.string() + "/").c_str(), 1);
  setenv("QVEspritUserModelsPath", folder.c_str(), 1);
  setenv("QVESPRIT_REGISTRY", (folder / "qvesprit-simulation-benchmark.reg").c_str(), 1);
  std::ofstream(file) << document_of(tools);
  platform::set_message_sink([](std::string_view text, std::string_view, platform::Icon) {
    throw std::runtime_error("a message came up: " + std::string(text));
  });
  for (auto _ : state) {
    deskhost::SessionOptions options;
    options.make_addin = component::make_connect_object;
    deskhost::Session session(std::move(options));
    session.connect();
    session.open(file.string());
    const std::uint64_t calls = session.gate().calls();
    const auto start = std::chrono::steady_clock::now();
    session.simulate();
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    state.SetIterationTime(took.count());
    state.counters["us_per_tool"] = took.count() * 1e6 / tools;
    state.counters["calls_per_tool"] = static_cast<double>(session.gate().calls() - calls) / tools;
    session.take_down();
    if (session.failures() != 0) state.SkipWithError("the add-in handed a failure back");
  }
  std::filesystem::remove(file);
  std::filesystem::remove(folder / "qvesprit-simulation-benchmark.reg");
}

BENCHMARK(start_of_simulation)
    ->Arg(1000)
    ->Arg(2000)
    ->Arg(4000)
    ->Arg(10000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
