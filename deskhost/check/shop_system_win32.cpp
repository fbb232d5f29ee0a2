#include <windows.h>

#include <fstream>
#include <iterator>
#include <sstream>
#include <vector>

#include "automation/failure.h"
#include "deskhost/check/shop_system.h"
#include "deskhost/system/file_path.h"
#include "deskhost/system/program.h"
#include "platform/win32/path_win32.h"

namespace deskhost::check {
namespace {

namespace fs = std::filesystem;
using platform::win32::Handle;

constexpr const wchar_t* addin_key = L"Software\\D.P.Technology\\Esprit\\QVEsprit";

/// Beside a program of the shop: what it does.
fs::path script_of(fs::path program) {
  return program += ".does";
}

std::string content_of(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

/// "copy 'a' 'b'": the word, and the names between quotes.
std::vector<std::string> words_of(const std::string& line) {
  std::vector<std::string> words{line.substr(0, line.find(' '))};
  for (std::size_t at = 0; (at = line.find('\'', at)) != std::string::npos;) {
    const std::size_t end = std::min(line.find('\'', at + 1), line.size());
    words.push_back(line.substr(at + 1, end - at - 1));
    at = end + 1;
  }
  words.resize(3);
  return words;
}

int do_script(const fs::path& script) {
  std::ifstream in(script, std::ios::binary);
  for (std::string line; std::getline(in, line);) {
    const std::vector<std::string> words = words_of(line);
    const fs::path first = path_of(words[1]), second = path_of(words[2]);
    if (words[0] == "copy") CopyFileW(first.c_str(), second.c_str(), FALSE);
    if (words[0] == "half") {
      const std::string all = content_of(first);
      constexpr std::size_t lacking = 40;
      std::ofstream(second, std::ios::binary) << all.substr(0, all.size() - lacking);
    }
    if (words[0] == "make") std::ofstream(first, std::ios::binary);
    if (words[0] == "folder") CreateDirectoryW(first.c_str(), nullptr);
    if (words[0] == "fail") return 3;
    if (words[0] == "die") TerminateProcess(GetCurrentProcess(), 9);
  }
  return 0;
}

/// The add-in's part of the registry, the process's own. It is lost with the user's session at the latest, so
/// that the keys have to be there already: those that the add-in makes would be kept.
class OwnRegistry {
 public:
  OwnRegistry() : name_(L"Software\\deskhost-check-" + std::to_wstring(GetCurrentProcessId())) {
    root_ = make(name_.c_str());
    if (root_ == nullptr || RegOverridePredefKey(HKEY_CURRENT_USER, root_) != ERROR_SUCCESS)
      throw automation::Failure("no registry of its own can be had for a check");
  }
  ~OwnRegistry() {
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegCloseKey(root_);
    RegDeleteTreeW(HKEY_CURRENT_USER, name_.c_str());
  }
  OwnRegistry(const OwnRegistry&) = delete;
  OwnRegistry& operator=(const OwnRegistry&) = delete;

  static HKEY make(const wchar_t* name) {
    HKEY key = nullptr;
    RegCreateKeyExW(HKEY_CURRENT_USER, name, 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr, &key,
                    nullptr);
    return key;
  }

 private:
  std::wstring name_;
  HKEY root_ = nullptr;
};

/// A line of a registry file becomes a value: a text, or else bytes of a kind that needn't fit them.
void set_value(HKEY key, const std::string& line) {
  const std::size_t sign = line.find("\"=");
  if (sign == std::string::npos) return;
  const std::string name = line.substr(line.starts_with('"') ? 1 : 0, sign - 1);
  std::string value = line.substr(sign + 2);
  DWORD kind = REG_SZ;
  if (value.starts_with('"')) {
    value = value.substr(1, value.find('"', 1) - 1);
  } else {
    constexpr DWORD kinds = 12;
    kind = value.empty() ? REG_NONE : static_cast<unsigned char>(value.front()) % kinds;
  }
  RegSetValueExA(key, name.c_str(), 0, kind, reinterpret_cast<const BYTE*>(value.data()),
                 static_cast<DWORD>(value.size()));
}

}  // namespace

void make_program(const fs::path& file, const std::string& script) {
  static const std::uintmax_t own_size = fs::file_size(own_program());
  if (!fs::is_regular_file(file) || fs::file_size(file) != own_size) {
    fs::remove_all(file);
    be_found_at(file);
  }
  std::ofstream(script_of(file), std::ios::binary) << script << '\n';
}

std::optional<int> run_as_shop_program() {
  const fs::path script = script_of(own_program());
  if (GetFileAttributesW(script.c_str()) == INVALID_FILE_ATTRIBUTES) return std::nullopt;
  return do_script(script);
}

void have_own_registry(const fs::path& /*file*/) {
  static const OwnRegistry own;
}

void refill_own_registry(const fs::path& file) {
  RegDeleteTreeW(HKEY_CURRENT_USER, addin_key);
  const HKEY key = OwnRegistry::make(addin_key);
  std::error_code none;
  const bool is_folder = fs::is_directory(file, none);
  std::istringstream lines(is_folder ? "\"tbPosition\"=\1\n\"tbTop\"=\2\n\"tbLeft\"=\4\1\n"
                                     : content_of(file));
  for (std::string line; std::getline(lines, line);) set_value(key, line);
  RegCloseKey(key);
}

std::shared_ptr<void> refuse_writes(const fs::path& file) {
  return {CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, 0, nullptr),
          CloseHandle};
}

// One that nobody has open can be had for oneself.
std::size_t open_files(const fs::path& folder) {
  std::size_t count = 0;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    const Handle alone(
        CreateFileW(entry.path().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    if (!alone && GetLastError() == ERROR_SHARING_VIOLATION) ++count;
  }
  return count;
}

}  // namespace deskhost::check
