// The export of the tool list on its three roads. The times of the two sizes of a road tell how it grows; the
// counters tell the host calls, which are what an export costs where the host isn't this one. The list maker
// is none, and the host is a table in memory.

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

#include "foundation/global.h"
#include "platform/component_runtime.h"
#include "platform/files.h"
#include "tests/toollist/json_host.h"
#include "toollist/mQuorvexList.h"

namespace {

using json_host::Node;
using nlohmann::json;

enum Road : int { by_operation, by_station, by_document };
constexpr int stations_of_turret = 100;

json document_of(Road road, int tools, int operations) {
  json document{{"Name", "Benchmark.esp"}, {"MachineType", road == by_operation ? 2 : 1}, {"SetupKind", 1}};
  const auto id = [](int number) { return "Tool#" + std::to_string(number); };
  for (int i = 0; i < tools; ++i) {
    document["Tools"].push_back({{"Parameters",
                                  {{"ToolID", id(i)},
                                   {"ToolStyle", 1 + i % 25},
                                   {"ToolNumber", i},
                                   {"TurretID", 1 + i / stations_of_turret % 10},
                                   {"StationID", 1 + i % stations_of_turret},
                                   {"LengthCompRegister", i},
                                   {"Orientation", 1},
                                   {"LatheToolOrientation", 2}}}});
  }
  for (int i = 0; i < operations; ++i) {
    document["Operations"].push_back({{"ToolID", id(i * 7 % tools)}, {"Duration", 0.1 * i}});
  }
  json turret{{"Stations", json::array()}};
  for (int i = 0; i < stations_of_turret; ++i) turret["Stations"].push_back(json::object());
  for (int i = 0; i < 10; ++i) document["MachineSetup"]["Turrets"].push_back(turret);
  return document;
}

std::uint64_t calls_of_export(Road road, int tools, int operations) {
  const json_host::Host host(document_of(road, tools, operations));
  const host::Application application(host.application);
  global::lend_application(&application);
  Node::calls = 0;
  mQuorvexList::ExportToolList();
  global::lend_application(nullptr);
  return Node::calls;
}

void export_tool_list(benchmark::State& state) {
  const auto road = static_cast<Road>(state.range(0));
  const auto tools = static_cast<int>(state.range(1));
  const int operations = 5 * tools;
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "export-benchmark";
  std::filesystem::create_directories(folder);
  setenv("QVMakeListPath", folder.c_str(), 1);
  setenv("QVEspritInstallPath", "/bin/true ", 1);  // in the list maker's place
  global::AddInName = "QVEsprit";
  platform::set_message_sink([](std::string_view, std::string_view, platform::Icon) {});
  const std::filesystem::path settings =
      std::filesystem::path(platform::native_path(platform::component_folder())) / "QVEsprit.cfg";
  platform::replace_file(settings.string(), road == by_document
                                                ? "[Default]\nToolOutputorderByLatheStation=0\n"
                                                : "[Default]\n");

  const json_host::Host host(document_of(road, tools, operations));
  const host::Application application(host.application);
  global::lend_application(&application);
  for (auto _ : state) mQuorvexList::ExportToolList();
  global::lend_application(nullptr);

  // Two exports that differ in one of the two only, so that what is asked once drops out.
  const auto calls = [&](int more_tools, int more_operations) {
    return static_cast<double>(calls_of_export(road, tools + more_tools, operations + more_operations));
  };
  const double here = calls(0, 0);
  state.counters["calls/tool"] = (calls(tools, 0) - here) / tools;
  state.counters["calls/operation"] = (calls(0, tools) - here) / tools;
  std::filesystem::remove(settings);
  std::filesystem::remove_all(folder);
}
BENCHMARK(export_tool_list)
    ->ArgNames({"road", "tools"})
    ->ArgsProduct({{by_operation, by_station, by_document}, {1000, 10000}})
    ->Unit(benchmark::kMillisecond);

}  // namespace
