// The members of clsIniFile beyond the reading of one text: numbers, truth values, writing, whole sections.

#include <algorithm>
#include <array>
#include <limits>
#include <optional>

#include "automation/failure.h"
#include "formats/text_lines.h"
#include "foundation/clsIniFile.h"
#include "platform/files.h"
#include "platform/message_box.h"
#include "platform/profile.h"
#include "platform/text.h"

namespace {

using automation::Error;
using automation::Failure;

constexpr std::size_t value_buffer = 255;
constexpr std::size_t section_buffer = 4096;

std::int16_t to_int16(std::int64_t number) {
  using Limits = std::numeric_limits<std::int16_t>;
  if (number < Limits::min() || number > Limits::max()) throw Failure(Error::overflow);
  return static_cast<std::int16_t>(number);
}

const char* truth_text(std::int16_t number) {
  return number != 0 ? "True" : "False";
}

// Takes the next text off a list; nothing at the list's closing NUL.
std::optional<std::string_view> take_text(std::string_view& list) {
  const std::size_t end = std::min(list.find('\0'), list.size());
  if (end == 0) return std::nullopt;
  const std::string_view text = list.substr(0, end);
  list.remove_prefix(std::min(end + 1, list.size()));
  return text;
}

// The name in a section's header; nothing for any other line.
std::optional<std::string_view> header_name(std::string_view line) {
  line = platform::trimmed(line.substr(0, line.find(';')));
  const bool header = line.starts_with('[') && line.find(']') == line.size() - 1;
  return header ? std::optional(line.substr(1, line.size() - 2)) : std::nullopt;
}

}  // namespace

void clsIniFile::DeleteStrEntry(const std::string& EntryName) {
  PutString(EntryName, "");
}

void clsIniFile::DeleteNumEntry(const std::string& EntryName) {
  if (!has_section()) return;
  const auto value = UseWinINI_ ? std::optional<std::string_view>("0") : std::nullopt;
  platform::write_private_profile_string(SectionName_, EntryName, value, profile());
}

void clsIniFile::DeleteSection() {
  if (!has_section()) return;
  platform::write_private_profile_section(SectionName_, "", profile());
  SectionName_.clear();
  Registered_ = false;
}

std::int16_t clsIniFile::Exists(const std::string& filname) const {
  const bool any_extension = filname.find('.') == std::string::npos;
  try {
    return platform::file_matches(any_extension ? filname + ".*" : filname) ? -1 : 0;
  } catch (const Failure& failure) {
    constexpr const char* source = "QVEsprit";
    const std::string number = std::to_string(automation::number_of(failure.error()));
    platform::message_box(source + std::string(" ") + failure.what() + " " + number, source);
    return 0;
  }
}

std::int16_t clsIniFile::GetInt(const std::string& EntryName, std::int16_t DefaultInt) const {
  if (!has_section()) return 0;
  return to_int16(platform::private_profile_int(SectionName_, EntryName, DefaultInt, profile()));
}

std::string clsIniFile::GetSectEntries() const {
  if (!has_section()) return {};
  return platform::private_profile_section(SectionName_, section_buffer, profile()) + '\0';
}

std::int16_t clsIniFile::GetSectEntriesEx(Rows& DataArry) const {
  if (!has_section()) return 0;
  DataArry.clear();
  const std::string entries = GetSectEntries();
  std::string_view rest = entries;
  while (const auto entry = take_text(rest)) {
    const std::size_t sign = std::min(entry->find('='), entry->size());
    const std::size_t value = std::min(sign + 1, entry->size());
    DataArry.push_back({std::string(entry->substr(0, sign)), std::string(entry->substr(value))});
  }
  return static_cast<std::int16_t>(DataArry.size());  // the buffer holds fewer than 16 bits count
}

std::string clsIniFile::GetSections() const {
  if (!has_section()) return {};
  formats::TextLines lines(platform::read_file(profile()));
  std::string names;
  while (const auto line = lines.next()) {
    const std::string text = platform::from_code_page(*line);
    if (const auto name = header_name(text)) names.append(*name) += '\0';
  }
  return (names.empty() ? std::string(1, '\0') : names) + '\0';
}

std::int16_t clsIniFile::GetSectionsEx(std::vector<std::string>& DataArry) const {
  DataArry.clear();
  const std::string names = GetSections();
  std::string_view rest = names;
  while (const auto name = take_text(rest)) DataArry.emplace_back(*name);
  return to_int16(static_cast<std::int64_t>(DataArry.size()));
}

bool clsIniFile::GetTF(const std::string& EntryName, std::int16_t DefaultInt) const {
  constexpr std::array true_texts{"YES", "Y", "TRUE", "T", "ON", "1", "-1"};
  const std::string text = platform::upper_case(GetString(EntryName, truth_text(DefaultInt)));
  return std::ranges::find(true_texts, platform::trimmed(text)) != true_texts.end();
}

void clsIniFile::FlushCache() {
  if (has_section()) platform::flush_private_profile(profile());
}

std::string clsIniFile::IniRead(const std::string& SectionName, const std::string& EntryName,
                                std::int16_t DefaultInt, const std::string& DefaultStr,
                                const std::string& /*ReturnStr*/, bool ReadNumber,
                                const std::string& FullPath) const {
  const std::string file = UseWinINI_ ? profile() : FullPath;
  if (!ReadNumber) {
    return platform::private_profile_string(SectionName, EntryName, DefaultStr, value_buffer, file);
  }
  return std::to_string(platform::private_profile_int(SectionName, EntryName, DefaultInt, file));
}

void clsIniFile::IniWrite(const std::string& SectionName, const std::string& EntryName,
                          const std::string& NewVal, const std::string& FullPath) {
  platform::write_private_profile_string(SectionName, EntryName, NewVal, UseWinINI_ ? profile() : FullPath);
}

std::int16_t clsIniFile::PutInt(const std::string& EntryName, std::int16_t IntValue) {
  return PutString(EntryName, std::to_string(IntValue));
}

std::int16_t clsIniFile::PutString(const std::string& EntryName, const std::string& StrValue) {
  if (!has_section()) return 0;
  return platform::write_private_profile_string(SectionName_, EntryName, StrValue, profile()) ? 1 : 0;
}

bool clsIniFile::PutTF(const std::string& EntryName, std::int16_t IntValue) {
  return PutString(EntryName, truth_text(IntValue)) != 0;
}

bool clsIniFile::SectExist(const std::string& SectionName) const {
  const std::string names = GetSections();
  if (names.empty() || names == std::string(2, '\0')) return false;
  const std::string framed = '\0' + platform::upper_case(SectionName) + '\0';
  return ('\0' + platform::upper_case(names)).find(framed) != std::string::npos;
}

bool clsIniFile::SetSectEntriesEx(const Rows& DataArry) {
  if (!has_section()) return false;
  std::string entries;
  for (const auto& row : DataArry) entries.append(row[0]).append("=").append(row[1]) += '\0';
  return SetSectEntries(entries + '\0');
}

bool clsIniFile::SetSectEntries(const std::string& Section) {
  if (!has_section()) return false;
  return platform::write_private_profile_section(SectionName_, Section, profile());
}
