// Read, change, write: what was asked for is there afterwards, and everything that wasn't touched still is.
// The input is section, key and value, each ended by LF, then the file.

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/profile_text.h"
#include "platform/text.h"

using namespace platform;

namespace {

std::string_view take(std::string_view& rest) {
  const std::size_t end = std::min(rest.find('\n'), rest.size());
  const std::string_view field = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return field;
}

// Every line that isn't blank, as it reads.
std::vector<std::string> lines_of(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const auto line = profile_text::take_line(text);
    if (line.kind == profile_text::Line::Kind::blank) continue;
    lines.emplace_back(line.whole.substr(0, line.whole.size() - line.end.size()));
  }
  return lines;
}

// Whether `after` is `before` but for `gone` lines that it lacks and `added` ones that it has in one place.
bool differ_in_one_place(const std::vector<std::string>& before, const std::vector<std::string>& after,
                         std::size_t gone, std::size_t added) {
  if (before.size() - gone + added != after.size()) return false;
  std::size_t head = 0;
  while (head < before.size() && head < after.size() && before[head] == after[head]) ++head;
  std::size_t tail = 0;
  while (tail < before.size() - std::min(head, before.size()) && tail < after.size() - head &&
         before[before.size() - 1 - tail] == after[after.size() - 1 - tail]) {
    ++tail;
  }
  return head + tail + gone >= before.size();
}

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::string section = from_code_page(take(text));
  const std::string key = from_code_page(take(text));
  const std::string value = from_code_page(take(text));
  const auto before = lines_of(text);
  const auto old = profile_text::find(text, section, key);

  if (const auto written = profile_text::with_entry(text, section, key, value)) {
    const auto found = profile_text::find(*written, section, key);
    std::string_view expected_line;
    const std::string line = "k=" + to_code_page(value);
    expected_line = line;
    require(found && *found == profile_text::take_line(expected_line).value);
    const bool new_header = before.size() + 2 == lines_of(*written).size();
    require(differ_in_one_place(before, lines_of(*written), old ? 1 : 0, new_header ? 2 : 1));
  }
  if (const auto removed = profile_text::with_entry(text, section, key, std::nullopt)) {
    require(differ_in_one_place(before, lines_of(*removed), old ? 1 : 0, 0));
    require(old || *removed == text);
  }
  if (const auto replaced = profile_text::with_entries(text, section, std::string_view("a=1\0b=2\0", 8))) {
    require(profile_text::section_entries(*replaced, section, 99) == std::string("a=1\0b=2\0", 8));
    // the list that is written back is the list that was read
    const auto again = profile_text::with_entries(*replaced, section, std::string_view("a=1\0b=2\0", 8));
    require(again && *again == *replaced);
  }
  return 0;
}
