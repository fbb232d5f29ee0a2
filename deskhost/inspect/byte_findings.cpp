#include <algorithm>

#include "deskhost/inspect/findings.h"
#include "formats/exchange_line.h"
#include "formats/text_lines.h"
#include "platform/text.h"

namespace deskhost::inspect {
namespace {

constexpr std::string_view utf8_mark = "\xEF\xBB\xBF";

bool is_data(std::string_view line, Source source) {
  return source == Source::tools ? formats::is_data_line(line) : !formats::is_comment(line);
}

bool is_utf16(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) return true;
  const std::string_view start = bytes.substr(0, 1000);
  const auto size = static_cast<std::ptrdiff_t>(start.size());
  const auto zeros = std::ranges::count(start, '\0');
  return zeros * 3 > size && zeros * 3 < size * 2;  // a copy that broke has nothing else
}

bool is_beyond_ascii(char c) {
  return static_cast<unsigned char>(c) >= 0x80;
}

/// The length of the character at the start of `bytes` where it is one of UTF-8 beyond ASCII, else 0.
std::size_t utf8_length(std::string_view bytes) {
  const auto first = static_cast<unsigned char>(bytes[0]);
  const std::size_t length = first >= 0xF0 && first <= 0xF4 ? 4 : first >= 0xE0 ? 3 : first >= 0xC2 ? 2 : 0;
  if (length == 0 || first > 0xF4 || bytes.size() < length) return 0;
  const auto follows = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
  return std::ranges::all_of(bytes.substr(1, length - 1), follows) ? length : 0;
}

/// Whether all bytes beyond ASCII make characters of UTF-8, and there is one.
bool is_utf8(std::string_view bytes) {
  bool any = false;
  for (std::size_t at = 0; at < bytes.size();) {
    if (!is_beyond_ascii(bytes[at])) {
      ++at;
      continue;
    }
    const std::size_t length = utf8_length(bytes.substr(at));
    if (length == 0) return false;
    any = true;
    at += length;
  }
  return any;
}

/// The word that the first character beyond ASCII stands in.
std::string_view first_word(std::string_view line) {
  constexpr std::string_view ends = "; \t\r\n";
  const auto at = static_cast<std::size_t>(std::ranges::find_if(line, is_beyond_ascii) - line.begin());
  const std::size_t before = line.find_last_of(ends, at);
  const std::size_t begin = before == line.npos ? 0 : before + 1;
  return line.substr(begin, line.find_first_of(ends, at) - begin);
}

void find_utf8(std::string_view bytes, Source source, Report& report) {
  if (!is_utf8(bytes)) return;
  formats::TextLines lines{std::string(bytes)};
  std::size_t first = 0;
  std::size_t count = 0;
  std::string word;
  while (const auto line = lines.next()) {
    if (!is_data(*line, source) || std::ranges::none_of(*line, is_beyond_ascii)) continue;
    if (count++ > 0) continue;
    first = lines.number();
    word = first_word(*line);
  }
  if (count == 0 || platform::from_code_page(word) == word) return;
  Finding made = finding(Severity::warning, "utf-8", first,
                         "The file is in UTF-8 and is read in the system's 8-bit code page: \"" + word +
                             "\" becomes \"" + platform::from_code_page(word) + "\", and so in " +
                             counted(count, "line") + ".",
                         "Let the file be written in the code page of the machine (Windows-1252).");
  made.value = word;
  report.findings.push_back(std::move(made));
}

void find_mark(std::string_view bytes, Source source, Report& report) {
  if (!bytes.starts_with(utf8_mark)) return;
  std::string_view first = bytes.substr(0, bytes.find('\r'));
  const bool was_data = is_data(first.substr(utf8_mark.size()), source);
  report.findings.push_back(
      finding(was_data ? Severity::warning : Severity::error, "byte-order-mark", 1,
              was_data ? "The file begins with a byte-order mark, which becomes part of the first field."
                       : "The file begins with a byte-order mark, which makes a tool of its first line.",
              "Let the file be written without the mark, in the code page of the machine."));
}

/// What the parts of a line behind a lone LF would be, if it ended one.
std::size_t data_behind(std::string_view line, Source source) {
  std::size_t count = 0;
  for (std::size_t at = line.find('\n'); at != line.npos; at = line.find('\n', at + 1)) {
    const std::string_view part = line.substr(at + 1, line.find('\n', at + 1) - at - 1);
    if (!part.empty() && is_data(part, source)) ++count;
  }
  return count;
}

void find_line_ends(std::string_view bytes, Source source, Report& report) {
  formats::TextLines lines{std::string(bytes)};
  std::size_t first = 0;
  std::size_t lost = 0;
  std::ptrdiff_t ends = 0;
  while (const auto line = lines.next()) {
    const std::ptrdiff_t here = std::ranges::count(*line, '\n');
    if (here == 0) continue;
    if (ends == 0) first = lines.number();
    ends += here;
    lost += data_behind(*line, source);
  }
  if (ends == 0) return;
  const std::string what = source == Source::tools ? "tool" : "row";
  report.findings.push_back(finding(
      lost > 0 ? Severity::error : Severity::warning, "line-end", first,
      counted(static_cast<std::size_t>(ends), "line end") +
          " of LF alone: a line ends at CR or CR LF only, so what follows belongs to the line before" +
          (lost > 0 ? "; " + counted(lost, what) + " lost by it." : "."),
      "Let every line end with CR LF."));
}

void find_nul(std::string_view bytes, Report& report) {
  const auto count = static_cast<std::size_t>(std::ranges::count(bytes, '\0'));
  if (count == 0) return;
  formats::TextLines lines{std::string(bytes)};
  auto line = lines.next();
  while (line && line->find('\0') == line->npos) line = lines.next();
  report.findings.push_back(
      finding(Severity::warning, "nul", lines.number(),
              "The file has " + counted(count, "NUL byte") +
                  ", the first in this line: it stays in its text, and whoever shows that may end it there.",
              "Look at what wrote the file, and whether it was copied whole."));
}

}  // namespace

void find_in_bytes(std::string_view bytes, Source source, Report& report) {
  const std::size_t known = report.findings.size();
  if (bytes.empty()) {
    if (source == Source::exchange) return;
    report.findings.push_back(finding(Severity::warning, "empty-file", 0,
                                      "The file is empty: the import makes no tool and says nothing.",
                                      "Look whether the exporter had tools to write."));
  } else if (is_utf16(bytes)) {
    report.findings.push_back(
        finding(Severity::error, "utf-16", 1,
                "The file is in UTF-16 and is read byte by byte: no field is what it looks like.",
                "Let the file be written in the code page of the machine (Windows-1252)."));
  } else {
    find_nul(bytes, report);
    find_mark(bytes, source, report);
    find_utf8(bytes.substr(bytes.starts_with(utf8_mark) ? utf8_mark.size() : 0), source, report);
    find_line_ends(bytes, source, report);
  }
  for (std::size_t i = known; i < report.findings.size(); ++i) report.findings[i].source = source;
}

}  // namespace deskhost::inspect
