// The export of the tool list on its three roads, through the host's boundary. The times of the two sizes of
// a road tell how it grows; the counters tell the host calls, which are what an export costs in another host.
// The list maker is none.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "component/connect_object.h"
#include "deskhost/session/session.h"
#include "platform/component_runtime.h"
#include "platform/files.h"
#include "platform/message_box.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

enum Road : int { by_operation, by_station, by_document };
constexpr int stations_of_turret = 100;

json document_of(Road road, int tools, int operations) {
  json document{{"Name", "Benchmark.esp"}, {"MachineType", road == by_operation ? 2 : 1}, {"SetupKind", 1}};
  const auto id = [](int number) { return "Tool#" + std::to_string(number); };
  for (int i = 0; i < tools; ++i) {
    document["Tools"].push_back({{"Class", 11},
                                 {"Parameters",
                                  {{"ToolStyle", 11},
                                   {"ToolID", id(i)},
                                   {"ToolNumber", i},
                                   {"TurretID", 1 + i / stations_of_turret % 10},
                                   {"StationID", 1 + i % stations_of_turret},
                                   {"LengthCompRegister", i},
                                   {"Orientation", 1}}}});
  }
  for (int i = 0; i < operations; ++i) {
    document["Operations"].push_back({{"ToolID", id(i * 7 % tools)}, {"Duration", 0.1 * i}});
  }
  json stations;
  for (int i = 1; i <= stations_of_turret; ++i) stations.push_back({{"Number", i}});
  for (int i = 0; i < 10; ++i) {
    document["MachineSetup"]["Turrets"].push_back({{"Name", "T"}, {"Stations", stations}});
  }
  return document;
}

/// A session with such a document, ready for the command.
class Desk {
 public:
  Desk(const fs::path& folder, Road road, int tools, int operations) : session_(options()) {
    const std::string file = (folder / "document.json").string();
    std::ofstream(file) << document_of(road, tools, operations);
    session_.connect();
    session_.open(file);
  }
  ~Desk() { session_.take_down(); }
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;

  /// Gives the host calls that it took.
  std::uint64_t run_export() {
    const std::uint64_t before = session_.gate().calls();
    session_.command(2);
    if (session_.failures() != 0) throw std::runtime_error("the add-in handed a failure back");
    return session_.gate().calls() - before;
  }

 private:
  static deskhost::SessionOptions options() {
    deskhost::SessionOptions options;
    options.make_addin = component::make_connect_object;
    return options;
  }
  deskhost::Session session_;
};

void export_tool_list(benchmark::State& state) {
  const auto road = static_cast<Road>(state.range(0));
  const auto tools = static_cast<int>(state.range(1));
  const int operations = 5 * tools;
  const fs::path folder = fs::temp_directory_path() / "qvesprit-export-benchmark";
  fs::create_directories(folder);
  setenv("QVMakeListPath", folder.c_str(), 1);
  setenv("QVEspritInstallPath", "/bin/true ", 1);  // in the list maker's place
  setenv("QVESPRIT_REGISTRY", (folder / "registry.reg").c_str(), 1);
  platform::set_message_sink([](std::string_view, std::string_view, platform::Icon) {});
  const fs::path settings = fs::path(platform::native_path(platform::component_folder())) / "QVEsprit.cfg";
  platform::replace_file(settings.string(), road == by_document
                                                ? "[Default]\nToolOutputorderByLatheStation=0\n"
                                                : "[Default]\n");
  {
    Desk desk(folder, road, tools, operations);
    for (auto _ : state) desk.run_export();
  }
  // Two exports that differ in one of the two only, so that what is asked once drops out.
  const auto calls = [&](int more_tools, int more_operations) {
    Desk desk(folder, road, tools + more_tools, operations + more_operations);
    return static_cast<double>(desk.run_export());
  };
  const double here = calls(0, 0);
  state.counters["calls/tool"] = (calls(tools, 0) - here) / tools;
  state.counters["calls/operation"] = (calls(0, tools) - here) / tools;
  fs::remove(settings);
  fs::remove_all(folder);
}
BENCHMARK(export_tool_list)
    ->ArgNames({"road", "tools"})
    ->ArgsProduct({{by_operation, by_station, by_document}, {1000, 10000}})
    ->Unit(benchmark::kMillisecond);

}  // namespace
