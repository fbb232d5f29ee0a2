#include "deskhost/inspect/examine.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#include "deskhost/console/output.h"
#include "deskhost/inspect/changes.h"
#include "deskhost/inspect/findings.h"
#include "deskhost/inspect/tool_file.h"
#include "deskhost/session/session.h"
#include "deskhost/system/file_path.h"

namespace deskhost::inspect {
namespace {

namespace fs = std::filesystem;

/// The bytes of a file, or of standard input.
std::string read(const std::string& named_by, const std::string& file) {
  if (file.empty()) return {};
  if (file == standard_file) return {std::istreambuf_iterator<char>(std::cin), {}};
  const fs::path path = path_of(file);
  const std::string named = named_by + "\"" + file + "\" can't be read: ";
  std::error_code ignored;
  if (!fs::exists(path, ignored)) throw WrongUse(named + "it isn't there", "give a file that is there");
  if (!fs::is_regular_file(path, ignored))  // a device or a pipe may never end, or never begin
    throw WrongUse(named + "it is no regular file", "give a file, not a folder, a device or a pipe");
  std::ifstream in(path, std::ios::binary);
  if (!in) throw WrongUse(named + "it can't be opened", "check its rights");
  return {std::istreambuf_iterator<char>(in), {}};
}

void refuse_what_is_no_component(const std::string& file) {
  std::error_code ignored;
  if (!fs::is_regular_file(path_of(file), ignored)) throw NotLoaded("\"" + file + "\" is no file");
}

/// The exchange file's findings stand behind those of the tools; within a line, fields in their order.
void sort(std::vector<Finding>& findings) {
  const auto key = [](const Finding& each) {
    return std::tuple(each.source, each.line, each.field.value_or(0), -static_cast<int>(each.severity));
  };
  std::ranges::stable_sort(findings, {}, key);
}

void write_down_tables(Trial& trial, Report& report) {
  for (TableRows& table : trial.tables) {
    if (table.table == "tblKbToolParameter") table.written_anew = trial.watch.parameters_written_anew;
    if (table.table == "tblSpeedFeedData") {
      table.written_anew =
          static_cast<std::uint64_t>(std::ranges::count(trial.watch.speeds, false, &WatchedSpeed::is_added));
    }
  }
  report.tables = trial.tables;
}

}  // namespace

Report examine(const Options& options, const Loader& load) {
  const ToolFile file(read("", options.file));
  const std::string exchange = read("--exchange: ", options.exchange_file);
  const std::string document = options.document == standard_file ? read("", options.document) : "";
  if (!options.models.empty() && !fs::is_directory(path_of(options.models))) {
    throw WrongUse("--models: \"" + options.models + "\" is no folder", "give a folder that is there");
  }
  if (options.settings == standard_file)
    throw WrongUse("--settings: standard input can't be read here", "give a file");
  static_cast<void>(read("--settings: ", options.settings));

  refuse_what_is_no_component(options.component);

  Trial trial(options, {std::string(file.bytes()), exchange, document}, load);
  Report report;
  report.file = options.file;
  report.exchange_file = options.exchange_file;
  report.document_file = options.document;
  report.models = options.models;
  report.knowledge_base = options.knowledge_base;
  report.data_lines = file.lines().size();
  report.lines_read = trial.watch.lines.size();
  report.before = trial.before;
  report.after = trial.after;
  report.messages = trial.messages;
  report.failures = trial.failures;
  write_down_tables(trial, report);
  find_changes(file.lines(), trial.watch.lines, trial.materials, report);

  const Inspected inspected{options, file, exchange, trial};
  find_in_bytes(file.bytes(), Source::tools, report);
  find_in_bytes(exchange, Source::exchange, report);
  find_in_layout(inspected, report);
  find_stop(inspected, report);
  find_in_values(inspected, report);
  find_in_identities(inspected, report);
  find_in_document(inspected, report);
  find_in_base(inspected, report);
  sort(report.findings);
  return report;
}

}  // namespace deskhost::inspect
