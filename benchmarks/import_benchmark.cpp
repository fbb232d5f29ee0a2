// The growth of an import: time per line and host calls per new tool, into an empty document and into one
// that has 20,000 tools already, on turrets with as many stations as a large machine has.

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "component/connect_object.h"
#include "deskhost/knowledgebase/knowledge_base.h"
#include "deskhost/session/session.h"
#include "platform/message_box.h"

namespace {

namespace fs = std::filesystem;

constexpr int tools_before = 20000;

/// A folder with an exporter, an empty document, and the shop's lines to draw from.
class Shop {
 public:
  Shop() : folder_(fs::temp_directory_path() / "qvesprit-import-benchmark") {
    fs::create_directories(folder_ / "models");
    write("QV-ToolExport.exe",
          "#!/bin/sh\nln -f '" + file("lines.csv") + "' '" + file("QV-Esprit-Export.csv") + "'\n");
    write("QV-Esprit-KB-Integration.csv", "");
    fs::permissions(folder_ / "QV-ToolExport.exe", fs::perms::owner_all);
    setenv("QVEspritInstallPath", (folder_.string() + "/").c_str(), 1);
    setenv("QVEspritExportPath", folder_.c_str(), 1);
    setenv("QVEspritUserModelsPath", (folder_ / "models").c_str(), 1);
    setenv("QVESPRIT_REGISTRY", file("registry.reg").c_str(), 1);
    platform::set_message_sink([](std::string_view text, std::string_view, platform::Icon) {
      throw std::runtime_error("a message came up: " + std::string(text));
    });
    read_shop();
  }
  ~Shop() { fs::remove_all(folder_); }
  Shop(const Shop&) = delete;
  Shop& operator=(const Shop&) = delete;

  [[nodiscard]] std::string file(const std::string& name) const { return (folder_ / name).string(); }

  /// A document on four turrets of 24 stations, with so many solids spread over them.
  void make_document(int solids) const {
    nlohmann::json document{{"Name", "large.esp"}};
    for (int turret = 0; turret < 4; ++turret) {
      nlohmann::json stations = nlohmann::json::array();
      for (int station = 1; station <= 24; ++station) stations.push_back({{"Number", station}});
      nlohmann::json entries = nlohmann::json::array();
      for (int solid = turret; solid < solids; solid += 4) {
        entries.push_back({{"Name", std::to_string(solid) + ".stl"}, {"Station", solid % 24 + 1}});
      }
      document["MachineSetup"]["Turrets"].push_back(
          {{"Name", "T"}, {"Stations", stations}, {"Solids", entries}});
    }
    write("document.json", document.dump());
  }

  /// The exporter writes `count` tools, with identifiers from `first` on.
  void prepare(int first, int count) const {
    fs::remove(folder_ / "lines.csv");
    std::ofstream out(folder_ / "lines.csv", std::ios::binary);
    for (int i = 0; i < count; ++i) {
      const auto& [before, after] = lines_[static_cast<std::size_t>(i) % lines_.size()];
      out << before << "#" << 1000000 + first + i << after << "\r\n";
    }
  }

 private:
  void write(const std::string& name, const std::string& bytes) const {
    std::ofstream(folder_ / name, std::ios::binary) << bytes;
  }
  void read_shop() {
    std::ifstream in("examples/shop/shop-tools.csv", std::ios::binary);
    for (std::string line; std::getline(in, line);) {
      if (line.empty() || line[0] < '0' || line[0] > '9') continue;
      const std::size_t hash = line.find('#');
      lines_.emplace_back(line.substr(0, hash),
                          line.substr(line.find(';', hash), line.find('\r') - line.find(';', hash)));
    }
    if (lines_.empty()) throw std::runtime_error("run from the project's root: examples/shop/shop-tools.csv");
  }

  fs::path folder_;
  std::vector<std::pair<std::string, std::string>> lines_;
};

void import(benchmark::State& state, int before, int count, int solids) {
  const Shop shop;
  shop.make_document(solids);
  for (auto _ : state) {
    deskhost::SessionOptions options;
    options.make_addin = component::make_connect_object;
    deskhost::Session session(std::move(options));
    session.offer("KnowledgeBase", deskhost::knowledge_base_maker(""));
    session.connect();
    session.open(shop.file("document.json"));
    if (before > 0) {
      shop.prepare(0, before);
      session.command(1);
    }
    shop.prepare(before, count);
    const std::uint64_t calls = session.gate().calls();
    const auto start = std::chrono::steady_clock::now();
    session.command(1);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    state.SetIterationTime(took.count());
    state.counters["us_per_line"] = took.count() * 1e6 / count;
    state.counters["calls_per_tool"] = static_cast<double>(session.gate().calls() - calls) / count;
    session.take_down();
    if (session.failures() != 0) state.SkipWithError("the add-in handed a failure back");
  }
}

void import_into_empty(benchmark::State& state) {
  import(state, 0, static_cast<int>(state.range(0)), 0);
}
void import_into_20000(benchmark::State& state) {
  import(state, tools_before, static_cast<int>(state.range(0)), 0);
}
// For each tool the solids of all turrets are walked through, as the host keeps no index of them.
void import_beside_solids(benchmark::State& state) {
  import(state, 0, 200, static_cast<int>(state.range(0)));
}

BENCHMARK(import_into_empty)
    ->Arg(1000)
    ->Arg(2000)
    ->Arg(10000)
    ->Arg(20000)
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(import_into_20000)
    ->Arg(1000)
    ->Arg(2000)
    ->Arg(10000)
    ->Arg(20000)
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

BENCHMARK(import_beside_solids)
    ->Arg(0)
    ->Arg(100)
    ->Arg(1000)
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

}  // namespace
