#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "deskhost/knowledgebase/knowledge_base.h"
#include "deskhost/knowledgebase/schema.h"
#include "deskhost/model/document.h"
#include "foundation/global.h"
#include "knowledgebase/KBM.h"
#include "platform/component_runtime.h"
#include "platform/message_box.h"

// Each line of an import against the bare inserts of the rows that it makes, in the same run: prepared, with
// the same transactions, on the same kind of file. The ratio counts; it has to stay the same from 1,000 to
// 10,000.
namespace {

using automation::Member;
using automation::Value;
using deskhost::Base;
using Clock = std::chrono::steady_clock;

class Host : public deskhost::DeskObject {
 public:
  [[nodiscard]] std::string trace_name() const override { return "Application"; }
  Value get(Member member, automation::Args args) override {
    if (member == Member("Document")) return automation::Ref(document);
    if (member == Member("Configuration")) return automation::Ref(shared_from_this());
    if (member == Member("Language")) return 0;
    return DeskObject::get(member, args);
  }
  deskhost::DeskRef desk = std::make_shared<deskhost::Desk>();
  std::shared_ptr<deskhost::Document> document = std::make_shared<deskhost::Document>(desk, "Flange.esp");
};

std::shared_ptr<Base> new_base() {
  return std::make_shared<Base>(deskhost::temporary_base(), Base::Open::create);
}

/// The host with an empty base, for one import after the other.
class Bench {
 public:
  Bench() {
    platform::offer_classes([this](std::string_view) { return deskhost::make_knowledge_base(base); });
    platform::set_message_sink([this](auto text, auto, auto) { message = text; });
    global::AddInName() = "QVEsprit";
    global::lend_application(application_);
  }
  ~Bench() {
    global::take_application_back(application_);
    platform::set_message_sink({});
    platform::offer_classes({});
  }
  Bench(const Bench&) = delete;
  Bench& operator=(const Bench&) = delete;

  std::shared_ptr<Host> host = std::make_shared<Host>();
  std::shared_ptr<Base> base = new_base();
  std::string message;

 private:
  host::Application application_{host};
};

template <class Work>
double seconds(Work&& work) {
  const auto start = Clock::now();
  work();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

void report(benchmark::State& state, double import, double bare, std::uint64_t statements) {
  const auto lines = static_cast<double>(state.range(0));
  state.SetIterationTime(import);
  state.counters["us_per_line"] = 1e6 * import / lines;
  state.counters["bare_us_per_line"] = 1e6 * bare / lines;
  state.counters["ratio"] = import / bare;
  state.counters["statements_per_line"] = static_cast<double>(statements) / lines;
}

/// The rows of a table, in the order in which they were made.
deskhost::Rows all_rows(Base& base, const deskhost::Table& table) {
  return base.query("select * from " + std::string(table.name) + " order by rowid");
}

const std::string tool_text = deskhost::insert_text(deskhost::tables::kb_tool);
const std::string parameter_text = deskhost::insert_text(deskhost::tables::kb_tool_parameter);
const std::string link_text = deskhost::insert_text(deskhost::tables::kb_tool_group_link);
const std::string speed_text = deskhost::insert_text(deskhost::tables::speed_feed_data);

/// The rows of one tool as one transaction each store call, as the stores have them.
double bare_tools(Base& filled) {
  const auto bare = new_base();
  const deskhost::Rows tools = all_rows(filled, deskhost::tables::kb_tool);
  const deskhost::Rows parameters = all_rows(filled, deskhost::tables::kb_tool_parameter);
  const deskhost::Rows links = all_rows(filled, deskhost::tables::kb_tool_group_link);
  const std::size_t per_tool = parameters.rows.size() / tools.rows.size();
  return seconds([&] {
    for (std::size_t tool = 0; tool < tools.rows.size(); ++tool) {
      bare->execute(tool_text, tools.rows[tool]);
      bare->as_one([&] {
        for (std::size_t i = 0; i < per_tool; ++i) {
          bare->execute(parameter_text, parameters.rows[tool * per_tool + i]);
        }
      });
      bare->execute(link_text, links.rows[tool]);
    }
  });
}

double bare_speeds(Base& filled) {
  const auto bare = new_base();
  const deskhost::Rows speeds = all_rows(filled, deskhost::tables::speed_feed_data);
  return seconds([&] {
    // The sequence in front is the database's to give.
    for (const auto& row : speeds.rows) bare->execute(speed_text, std::span(row).subspan(1));
  });
}

void tools(benchmark::State& state, bool again) {
  for ([[maybe_unused]] auto round : state) {
    Bench bench;
    const auto tool = deskhost::Tool::make(*bench.host->desk, 1);
    const host::ToolParameters parameters(tool);
    for (std::int32_t i = 1; i <= parameters.Count(); ++i) {
      try {
        parameters.Item(i).Value(10.0 + i / 8.0);
      } catch (const automation::Failure&) {
        continue;  // a code that takes no such number
      }
    }
    const auto import = [&] {
      for (std::int64_t line = 0; line < state.range(0); ++line) {
        parameters.Item("ToolID").Value("Mill#" + std::to_string(line));
        KBM::GetCutterMaterialId("HM " + std::to_string(line % 10));
        KBM::StoreToolInKnowledgeBase(parameters, "Group " + std::to_string(line % 20));
      }
    };
    if (again) import();
    const std::uint64_t before = bench.base->statements();
    const double time = seconds(import);
    const std::uint64_t statements = bench.base->statements() - before;
    report(state, time, bare_tools(*bench.base), statements);
  }
}

void speeds(benchmark::State& state, bool again) {
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "kb-benchmark";
  std::filesystem::create_directories(folder);
  setenv("QVEspritExportPath", folder.c_str(), 1);
  {
    std::ofstream file(folder / "QV-Esprit-KB-Integration.csv");
    for (std::int64_t line = 0; line < state.range(0); ++line) {
      file << "DIN;Steel;Condition " << line % 50 << ";Operation " << line / 50 % 20 << ";Cutter "
           << line / 1000 << ";M" << line % 50 << ";Name;Text;metric;;" << line << ";;0.1;;;3;0;note\r\n";
    }
  }
  for ([[maybe_unused]] auto round : state) {
    Bench bench;
    if (again) KBM::ImportSpeedsAndFeeds();
    const std::uint64_t before = bench.base->statements();
    const double time = seconds([] { KBM::ImportSpeedsAndFeeds(); });
    const std::uint64_t statements = bench.base->statements() - before;
    if (!bench.message.empty()) state.SkipWithError(bench.message.c_str());
    report(state, time, bare_speeds(*bench.base), statements);
  }
  std::filesystem::remove_all(folder);
}

BENCHMARK_CAPTURE(tools, into_empty_base, false)->Arg(100)->Arg(1000)->Iterations(1)->UseManualTime();
BENCHMARK_CAPTURE(tools, again, true)->Arg(100)->Arg(1000)->Iterations(1)->UseManualTime();
BENCHMARK_CAPTURE(speeds, into_empty_base, false)->Arg(1000)->Arg(10000)->Iterations(1)->UseManualTime();
BENCHMARK_CAPTURE(speeds, again, true)->Arg(1000)->Arg(10000)->Iterations(1)->UseManualTime();

}  // namespace
