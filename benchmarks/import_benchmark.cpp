// The growth of an import on turrets with as many stations as a large machine has: time per line, of it what
// is spent outside the host and its knowledge base, and host calls per tool. Into an empty document, beside
// tools, solids and model files, and of tools that are there already.

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

/// A folder with an exporter, an empty document, and the shop's lines to draw from.
class Shop {
 public:
  Shop() : folder_(fs::temp_directory_path() / "qvesprit-import-benchmark") {
    fs::create_directories(folder_ / "Models");
    write("QV-ToolExport.exe",
          "#!/bin/sh\nln -f '" + file("lines.csv") + "' '" + file("QV-Esprit-Export.csv") + "'\n");
    write("QV-Esprit-KB-Integration.csv", "");
    fs::permissions(folder_ / "QV-ToolExport.exe", fs::perms::owner_all);
    setenv("QVEspritInstallPath", (folder_.string() + "/").c_str(), 1);
    setenv("QVEspritExportPath", folder_.c_str(), 1);
    setenv("QVEspritUserModelsPath", (folder_ / "Models").c_str(), 1);
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

  /// So many models in the folder, none of them of a tool here; made an hour ago.
  void make_model_files(int count) const {
    for (int file = 0; file < count; ++file) write("Models/" + std::to_string(file) + ".stl", "solid");
    fs::last_write_time(folder_ / "Models", fs::file_time_type::clock::now() - std::chrono::hours(1));
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

/// What stands there before the import that is measured.
struct Before {
  int tools = 0;
  int solids = 0;
  int model_files = 0;
  bool same_tools = false;  // the import brings tools that are there
};

using Clock = std::chrono::steady_clock;

void import(benchmark::State& state, int count, const Before& before) {
  const Shop shop;
  shop.make_document(before.solids);
  shop.make_model_files(before.model_files);
  for (auto _ : state) {
    std::chrono::duration<double> in_host{};
    int depth = 0;
    Clock::time_point began;
    deskhost::SessionOptions options;
    options.make_addin = component::make_connect_object;
    options.gate.observer = [&](deskhost::CallKind, const automation::Object&, automation::Member) {
      if (depth++ == 0) began = Clock::now();
    };
    options.gate.finished = [&] {
      if (--depth == 0) in_host += Clock::now() - began;
    };
    deskhost::Session session(std::move(options));
    session.offer("KnowledgeBase", deskhost::knowledge_base_maker(""));
    session.connect();
    session.open(shop.file("document.json"));
    const int tools_before = before.same_tools ? count : before.tools;
    if (tools_before > 0) {
      shop.prepare(0, tools_before);
      session.command(1);
    }
    shop.prepare(before.same_tools ? 0 : tools_before, count);
    const std::uint64_t calls = session.gate().calls();
    in_host = {};
    const auto start = Clock::now();
    session.command(1);
    const std::chrono::duration<double> took = Clock::now() - start;
    state.SetIterationTime(took.count());
    state.counters["us_per_line"] = took.count() * 1e6 / count;
    state.counters["own_us_per_line"] = (took - in_host).count() * 1e6 / count;
    state.counters["calls_per_tool"] = static_cast<double>(session.gate().calls() - calls) / count;
    session.take_down();
    if (session.failures() != 0) state.SkipWithError("the add-in handed a failure back");
  }
}

// The first argument is the number of lines, where there is one.
void into_empty(benchmark::State& state) {
  import(state, static_cast<int>(state.range(0)), {});
}
void beside_20000_tools(benchmark::State& state) {
  import(state, static_cast<int>(state.range(0)), {.tools = 20000});
}
void of_tools_that_are_there(benchmark::State& state) {
  import(state, static_cast<int>(state.range(0)), {.same_tools = true});
}
constexpr int few_lines = 200;
void beside_solids(benchmark::State& state) {
  import(state, few_lines, {.solids = static_cast<int>(state.range(0))});
}
void beside_model_files(benchmark::State& state) {
  import(state, few_lines, {.model_files = static_cast<int>(state.range(0))});
}

void growing(benchmark::internal::Benchmark* run) {
  for (const int lines : {1000, 2000, 10000, 20000}) run->Arg(lines);
}
void once(benchmark::internal::Benchmark* run) {
  run->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);
}

BENCHMARK(into_empty)->Apply(growing)->Apply(once);
BENCHMARK(beside_20000_tools)->Apply(growing)->Apply(once);
BENCHMARK(of_tools_that_are_there)->Arg(1000)->Arg(2000)->Arg(4000)->Apply(once);
BENCHMARK(beside_solids)->Arg(0)->Arg(100)->Arg(1000)->Apply(once);
BENCHMARK(beside_model_files)->Arg(0)->Arg(1000)->Arg(10000)->Apply(once);

}  // namespace
