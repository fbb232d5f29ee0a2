// The reader of the export file beside a bare memchr over the same bytes and beside the split that one would
// write first. All three have to see the same fields.

#include <benchmark/benchmark.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "formats/export_file.h"

namespace {

constexpr std::size_t file_size = 64U << 20U;

const std::string& export_file() {
  static const std::string bytes = [] {
    std::ifstream file("examples/shop/shop-tools.csv", std::ios::binary);
    const std::string shop((std::istreambuf_iterator<char>(file)), {});
    if (shop.empty()) throw std::runtime_error("run from the project's root: examples/shop/shop-tools.csv");
    std::string all;
    while (all.size() < file_size) all += shop;
    return all;
  }();
  return bytes;
}

struct Seen {
  std::uint64_t lines = 0;
  std::uint64_t fields = 0;
  std::uint64_t bytes = 0;
  friend bool operator==(const Seen&, const Seen&) = default;
};

Seen read_with_reader(formats::ExportFile& file) {
  Seen seen;
  while (file.next_data_line()) {
    const formats::LineFields& fields = file.fields();
    ++seen.lines;
    seen.fields += fields.count();
    for (std::size_t i = 0; i < fields.count(); ++i) seen.bytes += fields.bytes(i).size();
  }
  return seen;
}

Seen read_with_streams(const std::string& bytes) {
  Seen seen;
  std::istringstream file(bytes);
  for (std::string line; std::getline(file, line, '\n');) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const std::size_t first = line.find_first_not_of(' ');
    if (first == line.npos || line[first] == '*' || line.compare(first, 12, "FileVersion:") == 0) continue;
    ++seen.lines;
    std::vector<std::string> fields;
    std::istringstream split(line);
    for (std::string field; std::getline(split, field, ';');) fields.push_back(field);
    if (line.back() == ';') fields.emplace_back();
    for (std::size_t i = 0; i < fields.size() && i < formats::field_count; ++i) {
      ++seen.fields;
      seen.bytes += fields[i].size();
    }
  }
  return seen;
}

void reader(benchmark::State& state) {
  const Seen expected = read_with_streams(export_file());
  std::optional<formats::ExportFile> file;
  for (auto _ : state) {
    state.PauseTiming();  // the reader takes its bytes over from the file; a copy is no part of its work
    file.reset();
    file.emplace(export_file());
    state.ResumeTiming();
    const Seen seen = read_with_reader(*file);
    if (seen != expected) state.SkipWithError("the reader and the streams see different fields");
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * export_file().size()));
}
BENCHMARK(reader)->Unit(benchmark::kMillisecond);

void memchr_for_line_ends(benchmark::State& state) {
  const std::string& bytes = export_file();
  for (auto _ : state) {
    std::size_t lines = 0;
    for (const char* at = bytes.data(); at != nullptr; ++lines) {
      at = static_cast<const char*>(
          std::memchr(at + 1, '\r', static_cast<std::size_t>(bytes.data() + bytes.size() - at - 1)));
    }
    benchmark::DoNotOptimize(lines);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes.size()));
}
BENCHMARK(memchr_for_line_ends)->Unit(benchmark::kMillisecond);

void getline_and_stringstream(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(read_with_streams(export_file()));
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * export_file().size()));
}
BENCHMARK(getline_and_stringstream)->Unit(benchmark::kMillisecond);

}  // namespace
