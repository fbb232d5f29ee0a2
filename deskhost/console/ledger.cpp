#include "deskhost/console/ledger.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <set>

#include "deskhost/session/trace.h"
#include "deskhost/system/file_path.h"
#include "formats/export_file.h"
#include "formats/tool_identity.h"
#include "formats/tool_list.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/text.h"

namespace deskhost {

using automation::Member;
using automation::Value;

namespace {

constexpr std::int32_t import_command = 1;
constexpr std::int32_t export_command = 2;

/// Two states of a tool with the same print are the same to whoever looks at the document.
std::uint64_t print_of(const Tool& tool) {
  std::uint64_t print = 0;
  const auto add = [&](const std::string& text) {
    print = print * 1099511628211U + std::hash<std::string>{}(text);
  };
  for (const catalogue::Index parameter : catalogue::parameters_of(tool.tool_class())) {
    const Value& value = tool.value(parameter);
    add(value.is(Value::Kind::Empty) ? "\x01" : value.to_text());
  }
  if (const CustomProperties* properties = tool.existing_custom_properties()) {
    for (const auto& property : properties->all())
      add(property->name() + '\x01' + property->value().to_text());
  }
  return print;
}

/// The content of an exchange file; empty where it can't be read.
std::string content_of(const char* folder_variable, const char* name) {
  try {
    return platform::read_file(platform::environment(folder_variable) + "\\" + name);
  } catch (const automation::Failure&) {
    return {};
  }
}

/// When the tool list was written last.
std::filesystem::file_time_type time_of_list() {
  std::error_code ignored;
  const std::string name = platform::environment("QVMakeListPath") + "\\QVEspritList.tls";
  return std::filesystem::last_write_time(path_of(platform::native_path(name)), ignored);
}

/// The identifiers of a tool list's rows; none where it is the one of before.
std::multiset<std::string> rows_of_list(std::filesystem::file_time_type before) {
  std::multiset<std::string> rows;
  if (time_of_list() == before) return rows;
  formats::TextLines lines(content_of("QVMakeListPath", "QVEspritList.tls"));
  bool is_below_head = false;
  while (const auto line = lines.next()) {
    if (is_below_head) rows.insert(platform::from_code_page(line->substr(0, line->find(';'))));
    is_below_head = is_below_head || *line == formats::tool_list::head_of_rows.back();
  }
  return rows;
}

struct CountName {
  std::size_t Counts::*count;
  const char* key;
};
constexpr std::array<CountName, 10> count_names{{{&Counts::lines, "lines"},
                                                 {&Counts::lines_in_file, "lines_in_file"},
                                                 {&Counts::tools_new, "tools_new"},
                                                 {&Counts::tools_changed, "tools_changed"},
                                                 {&Counts::values_refused, "values_refused"},
                                                 {&Counts::list_rows, "list_rows"},
                                                 {&Counts::list_left_out, "list_left_out"},
                                                 {&Counts::message_boxes, "message_boxes"},
                                                 {&Counts::programs_failed, "programs_failed"},
                                                 {&Counts::empty_files, "empty_files"}}};

std::string counted(std::size_t count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

}  // namespace

bool Ledger::observe(CallKind kind, const automation::Object& target, Member member) {
  if (kind != CallKind::put || member != Member("Value") || !is_importing_) return false;
  if (!trace_name_of(target).ends_with(".ToolID")) return false;
  lines_in_file();
  ++counts_.lines;
  return true;
}

void Ledger::refused(const automation::Object& target, const Value& value) {
  const std::string* const text = value.text();
  if (text != nullptr && text->empty()) return;
  if (dynamic_cast<const ToolParameter*>(&target) != nullptr) ++counts_.values_refused;
}

std::size_t Ledger::lines_in_file() {
  if (is_file_counted_ || !is_importing_) return file_lines_;
  is_file_counted_ = true;
  formats::ExportFile file(content_of("QVEspritExportPath", "QV-Esprit-Export.csv"));
  while (file.next_data_line()) ++file_lines_;
  return file_lines_;
}

void Ledger::before_command(std::int32_t number, const Document* document) {
  is_importing_ = number == import_command;
  is_file_counted_ = false;
  file_lines_ = 0;
  lines_before_ = counts_.lines;
  before_.clear();
  names_before_.clear();
  if (number == export_command) list_before_ = time_of_list();
  if (document == nullptr) return;
  for (const auto& tool : document->tools().all()) {
    if (number == import_command) before_[tool->session_number()] = print_of(*tool);
    if (number == export_command) names_before_.push_back(tool->name());
  }
}

void Ledger::after_command(std::int32_t number, const Document* document) {
  if (number == import_command) count_tools(document);
  if (number == export_command) count_list(document);
  is_importing_ = false;
}

void Ledger::count_tools(const Document* document) {
  counts_.lines_in_file += lines_in_file();
  if (counts_.lines == lines_before_) ++counts_.empty_files;
  if (document == nullptr) return;
  for (const auto& tool : document->tools().all()) {
    const auto known = before_.find(tool->session_number());
    if (known == before_.end()) {
      ++counts_.tools_new;
    } else if (known->second != print_of(*tool)) {
      ++counts_.tools_changed;
    }
  }
}

void Ledger::count_list(const Document* document) {
  if (document == nullptr) return;
  std::multiset<std::string> rows = rows_of_list(list_before_);
  counts_.list_rows += rows.size();
  if (rows.empty()) ++counts_.empty_files;
  for (const std::string& name : names_before_) {
    const auto row = rows.find(std::string(tool_identity::behind_last_hash(name)));
    if (row == rows.end()) {
      ++counts_.list_left_out;
    } else {
      rows.erase(row);
    }
  }
}

std::string text_of(const Counts& c) {
  std::string text;
  if (c.lines_in_file + c.lines > 0 || c.tools_new + c.tools_changed > 0) {
    text += "import: " + std::to_string(c.lines) + " of " + counted(c.lines_in_file, "line") + " read, " +
            counted(c.tools_new, "tool") + " new, " + std::to_string(c.tools_changed) + " changed, " +
            counted(c.values_refused, "value") + " refused\n";
  }
  if (c.list_rows + c.list_left_out > 0) {
    text += "export: " + counted(c.list_rows, "row") + " written, " + counted(c.list_left_out, "tool") +
            " left out of the list\n";
  }
  if (c.message_boxes + c.programs_failed + c.empty_files > 0) {
    text += "told: " + std::to_string(c.message_boxes) +
            (c.message_boxes == 1 ? " message box, " : " message boxes, ") +
            counted(c.programs_failed, "program") + " failed, " + counted(c.empty_files, "file") +
            " gave nothing\n";
  }
  return text;
}

nlohmann::ordered_json json_of(const Counts& counts) {
  nlohmann::ordered_json json;
  for (const CountName& row : count_names) json[row.key] = counts.*row.count;
  return json;
}

}  // namespace deskhost
