// Any bytes are a tool export file: its fields are those that a plain split at ";" gives, and its lines end.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "formats/export_file.h"
#include "import/tool_record.h"

namespace {

std::vector<std::string_view> split(std::string_view line) {
  std::vector<std::string_view> fields;
  while (fields.size() < formats::field_count) {
    const std::size_t end = line.find(';');
    fields.push_back(line.substr(0, end));
    if (end == line.npos) break;
    line.remove_prefix(end + 1);
  }
  return fields;
}

bool is_data(std::string_view line) {
  line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
  return !line.empty() && line.front() != '*' && !line.starts_with("FileVersion:");
}

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  formats::ExportFile file(bytes);
  formats::TextLines lines(bytes);
  while (const auto line = lines.next()) {
    if (!is_data(*line)) continue;
    require(file.next_data_line());
    const formats::LineFields& fields = file.fields();
    const std::vector<std::string_view> expected = split(*line);
    require(fields.count() == expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) require(fields.bytes(i) == expected[i]);
    if (fields.count() == formats::field_count) mQuorvex::ToolRecord record(fields);
  }
  require(!file.next_data_line());
  return 0;
}
