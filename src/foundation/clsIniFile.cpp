#include "foundation/clsIniFile.h"

#include <optional>

#include "platform/component_runtime.h"
#include "platform/files.h"
#include "platform/message_box.h"
#include "platform/profile.h"
#include "platform/text.h"

namespace {

constexpr std::size_t value_buffer = 255;

bool is_blank(std::string_view text) {
  return platform::trimmed(text).empty();
}

std::string proper_case(std::string text) {
  const auto shift = [](char& c, char first, char last, int by) {
    if (c >= first && c <= last) c = static_cast<char>(c + by);
  };
  for (char& c : text) shift(c, 'A', 'Z', 'a' - 'A');
  if (!text.empty()) shift(text.front(), 'a', 'z', 'A' - 'a');
  return text;
}

// Where the name starts in a path that has only a drive in front of it; nothing for any other.
std::optional<std::size_t> behind_drive(std::string_view path) {
  const std::size_t colon = path.find(':');
  if (colon == std::string_view::npos) return std::nullopt;
  // the second character: one that isn't ASCII takes several bytes in front of it
  const bool is_drive = platform::character_count(path.substr(0, colon)) == 1;
  return is_drive ? std::optional(colon + 1) : std::nullopt;
}

bool is_letter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

}  // namespace

clsIniFile::clsIniFile() {
  const std::string program = platform::component_name();
  if (is_blank(program)) return;
  FullPath(platform::long_path(platform::component_folder()) + "\\" + proper_case(program) + ".ini");
  SectionName_ = "General";
}

void clsIniFile::take_path(const std::string& path) {
  FullPath_ = path;
  FilePath_ = ExtractPath(path);
  FileName_ = ExtractName(path, 1);
  FileExt_ = ExtractName(path, 2);
}

void clsIniFile::UseWinINI(bool bChoice) {
  if (bChoice == UseWinINI_) return;
  if (bChoice) {
    take_path(platform::windows_directory() + "\\WIN.INI");
    UseWinINI_ = true;
  } else {
    FullPath(std::string(PrivPath_));  // a copy, as the setter changes the field
  }
}

void clsIniFile::FullPath(const std::string& NewPath) {
  PrivPath_ = NewPath;
  take_path(NewPath);
  Registered_ = !is_blank(SectionName_);
  UseWinINI_ = false;
}

void clsIniFile::SectionName(const std::string& SetSection) {
  SectionName_ = SetSection;
  Registered_ = !is_blank(SetSection);
}

std::string clsIniFile::ExtractName(const std::string& PathIn, std::int32_t RetChoice) const {
  const std::string& path = PathIn.empty() ? FullPath_ : PathIn;
  const std::size_t separator = path.rfind('\\');
  std::string name =
      path.substr(separator != std::string::npos ? separator + 1 : behind_drive(path).value_or(0));
  const std::size_t dot = name.find('.');
  if (dot != std::string::npos && RetChoice == 1) return name.substr(0, dot);
  if (dot != std::string::npos && RetChoice == 2) return name.substr(dot + 1);
  return name;
}

std::string clsIniFile::ExtractPath(const std::string& PathIn) const {
  const std::string& path = PathIn.empty() ? FullPath_ : PathIn;
  std::string folder;
  if (const std::size_t separator = path.rfind('\\'); separator != std::string::npos) {
    folder = path.substr(0, separator);
  } else {
    if (behind_drive(path) && is_letter(path.front())) folder = platform::current_directory(path.front());
    if (folder.empty()) folder = platform::current_directory();
  }
  if (folder.ends_with('\\')) folder.pop_back();
  return folder;
}

std::string clsIniFile::GetString(const std::string& EntryName, const std::string& DefaultStr) const {
  if (!has_section()) return {};
  return platform::private_profile_string(SectionName_, EntryName, DefaultStr, value_buffer, profile());
}

std::string clsIniFile::profile() const {
  return UseWinINI_ ? platform::system_profile() : FullPath_;
}

bool clsIniFile::has_section() const {
  if (!Registered_) {
    platform::message_box("[Section] and FileName Not Registered in Private.Ini!", "IniFile Logic Error",
                          platform::Icon::information);
  }
  return Registered_;
}
