#include <windows.h>

#include <filesystem>
#include <fstream>

#include "platform/temp_folder.h"

namespace testing_support {
namespace {

std::wstring wide(const std::string& utf8) {
  return path_of(utf8).native();
}

class DecimalSign : public Otherwise {
 public:
  explicit DecimalSign(char sign) {
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, before_, room);
    const wchar_t text[] = {static_cast<wchar_t>(sign), 0};
    is_changed_ = before_[0] != text[0];
    if (is_changed_) SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, text);
  }
  ~DecimalSign() override {
    if (is_changed_) SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, before_);
  }

 private:
  static constexpr int room = 8;
  wchar_t before_[room] = {};
  bool is_changed_ = false;
};

class OwnRegistry : public Otherwise {
 public:
  OwnRegistry() : name_(L"Software\\QVEspritTests" + std::to_wstring(GetCurrentProcessId())) {
    RegCreateKeyExW(HKEY_CURRENT_USER, name_.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &own_, nullptr);
    RegOverridePredefKey(HKEY_CURRENT_USER, own_);
  }
  ~OwnRegistry() override {
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegCloseKey(own_);
    RegDeleteTreeW(HKEY_CURRENT_USER, name_.c_str());
  }

 private:
  std::wstring name_;
  HKEY own_ = nullptr;
};

}  // namespace

const bool on_windows = true;
const bool on_wine = GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;
const char* const program_ending = ".exe";

std::optional<std::string> variable(const std::string& name) {
  const DWORD room = GetEnvironmentVariableW(wide(name).c_str(), nullptr, 0);
  if (room == 0) return std::nullopt;
  std::wstring value(room, L'\0');
  value.resize(GetEnvironmentVariableW(wide(name).c_str(), value.data(), room));
  const std::u8string utf8 = std::filesystem::path(value).u8string();
  return std::string(utf8.begin(), utf8.end());
}

void set_variable(const std::string& name, const std::optional<std::string>& value) {
  SetEnvironmentVariableW(wide(name).c_str(), value ? wide(*value).c_str() : nullptr);
}

Drive::Drive(std::string folder) : folder_(std::move(folder)) {
  while (folder_.ends_with('\\')) folder_.pop_back();
}

Drive::~Drive() = default;

std::string Drive::at(std::string text) const {
  for (std::size_t place = 0; (place = text.find(':', place)) != std::string::npos; ++place) {
    if (place == 0 || (text[place - 1] | 0x20) != 'q') continue;
    text.replace(place - 1, 2, folder_);
    place += folder_.size() - 2;
  }
  return text;
}

std::unique_ptr<Otherwise> with_decimal_sign(char sign) {
  return std::make_unique<DecimalSign>(sign);
}

std::unique_ptr<Otherwise> with_own_registry(const std::string& /*folder*/) {
  return std::make_unique<OwnRegistry>();
}

void make_program(const std::string& file, const std::string& instructions) {
  namespace fs = std::filesystem;
  fs::create_directories(path_of(file).parent_path());
  fs::remove(path_of(file));
  fs::copy_file(STAND_IN, path_of(file));
  std::ofstream(path_of(file + ".todo")) << instructions;
}

}  // namespace testing_support
