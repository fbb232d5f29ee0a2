// What an inspection costs beside the import that it tries: the same lines into the same document, as a
// session would import them, and inspected with both reports written.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "deskhost/inspect/inspect.h"
#include "deskhost/knowledgebase/knowledge_base.h"
#include "deskhost/session/session.h"
#include "platform/component_runtime.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* document = "examples/shop/turret.json";

std::function<automation::Ref()> load(const std::string& file) {
  return [component = std::shared_ptr(platform::load_component(file))] {
    return component->create("QVEsprit.Connect");
  };
}

/// A folder with an exporter and a file of `count` tools, made of the shop's lines.
class Shop {
 public:
  explicit Shop(int count) : folder_(fs::temp_directory_path() / "qvesprit-inspect-benchmark") {
    fs::create_directories(folder_);
    std::ofstream(folder_ / "QV-ToolExport.exe")
        << "#!/bin/sh\ncp '" << file("lines.csv") << "' '" << file("QV-Esprit-Export.csv") << "'\n";
    fs::permissions(folder_ / "QV-ToolExport.exe", fs::perms::owner_all);
    std::ofstream(folder_ / "QV-Esprit-KB-Integration.csv").flush();
    setenv("QVEspritInstallPath", (folder_.string() + "/").c_str(), 1);
    setenv("QVEspritExportPath", folder_.c_str(), 1);
    setenv("QVEspritUserModelsPath", folder_.c_str(), 1);
    setenv("QVESPRIT_REGISTRY", file("registry.reg").c_str(), 1);
    write_lines(count);
  }
  ~Shop() { fs::remove_all(folder_); }
  Shop(const Shop&) = delete;
  Shop& operator=(const Shop&) = delete;

  [[nodiscard]] std::string file(const std::string& name) const { return (folder_ / name).string(); }

 private:
  void write_lines(int count) const {
    std::ofstream out(folder_ / "lines.csv", std::ios::binary);
    for (int written = 0; written < count;) {
      std::ifstream in("examples/shop/shop-tools.csv", std::ios::binary);
      if (!in) throw std::runtime_error("run from the project's root: examples/shop/shop-tools.csv");
      for (std::string line; written < count && std::getline(in, line);) {
        const std::size_t hash = line.find('#');
        if (line.empty() || line[0] < '0' || line[0] > '9') continue;
        out << line.substr(0, hash + 1) << 1000000 + written++ << line.substr(line.find(';', hash)) << '\n';
      }
    }
  }

  fs::path folder_;
};

void bare_import(benchmark::State& state) {
  const Shop shop(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    deskhost::SessionOptions options;
    options.make_addin = load(COMPONENT);
    deskhost::Session session(std::move(options));
    session.offer("KnowledgeBase", deskhost::knowledge_base_maker(""));
    session.connect();
    session.open(document);
    session.command(1);
    session.take_down();
  }
}

void inspection(benchmark::State& state) {
  const Shop shop(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    std::ostringstream out;
    deskhost::inspect::sub_command().run(
        {shop.file("lines.csv"), document, "--models", shop.file(""), "--json", shop.file("report.json"),
         "--html", shop.file("report.html"), "--addin", COMPONENT},
        {out, out, load});
    if (out.str().find("\nSummary\n") == std::string::npos) state.SkipWithError("the inspection ended early");
  }
}

BENCHMARK(bare_import)->Arg(1000)->Arg(4000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(inspection)->Arg(1000)->Arg(4000)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
