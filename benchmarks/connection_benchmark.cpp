// What the add-in costs its host when nothing is done with it: connection and take-down, and the state of a
// command, which a host asks for many times a second.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>

#include "component/connect_object.h"
#include "deskhost/session/session.h"
#include "platform/message_box.h"

namespace {

deskhost::SessionOptions with_add_in() {
  const std::filesystem::path folder = std::filesystem::temp_directory_path();
  setenv("QVEspritInstallPath", (folder.string() + "/").c_str(), 1);
  setenv("QVEspritUserModelsPath", folder.c_str(), 1);
  setenv("QVESPRIT_REGISTRY", (folder / "qvesprit-connection-benchmark.reg").c_str(), 1);
  platform::set_message_sink([](std::string_view, std::string_view, platform::Icon) {});
  deskhost::SessionOptions options;
  options.make_addin = component::make_connect_object;
  return options;
}

void connection_and_take_down(benchmark::State& state) {
  std::uint64_t calls = 0;
  for (auto _ : state) {
    deskhost::Session session(with_add_in());
    session.connect();
    session.take_down();
    calls = session.gate().calls();
    if (!session.gate().left_behind().empty()) state.SkipWithError("the add-in left something behind");
  }
  state.counters["host_calls"] = static_cast<double>(calls);
}
BENCHMARK(connection_and_take_down)->Unit(benchmark::kMicrosecond);

void state_of_a_command(benchmark::State& state) {
  deskhost::Session session(with_add_in());
  session.connect();
  const std::uint64_t before = session.gate().calls();
  for (auto _ : state) benchmark::DoNotOptimize(session.command_ui(1));
  state.counters["host_calls"] =
      static_cast<double>(session.gate().calls() - before) / static_cast<double>(state.iterations());
  session.take_down();
}
BENCHMARK(state_of_a_command)->Unit(benchmark::kMicrosecond);

}  // namespace
