#include "platform/win32/path_win32.h"

#include <algorithm>
#include <memory>

#include "platform/file_pattern.h"
#include "platform/files.h"
#include "platform/win32/text_win32.h"

namespace platform {
namespace {

using automation::Error;
using automation::Failure;
using win32::utf8;
using win32::wide;

// The files and folders that a search finds; it stands on the first one where there is any.
class Search {
 public:
  explicit Search(std::string_view pattern)
      : handle_(FindFirstFileW(wide(pattern).c_str(), &found_)), error_(GetLastError()) {}
  ~Search() {
    if (has_found()) FindClose(handle_);
  }
  Search(const Search&) = delete;
  Search& operator=(const Search&) = delete;

  [[nodiscard]] bool has_found() const { return handle_ != INVALID_HANDLE_VALUE; }
  [[nodiscard]] DWORD error() const { return error_; }
  [[nodiscard]] std::string name() const { return utf8(found_.cFileName); }
  [[nodiscard]] bool is_folder() const { return (found_.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
  bool next() { return FindNextFileW(handle_, &found_) != FALSE; }

 private:
  WIN32_FIND_DATAW found_{};
  HANDLE handle_;
  DWORD error_;
};

// Where the levels of a path begin that can be looked for: behind the drive, or behind server and share.
std::size_t start_of_levels(std::string_view path) {
  if (!path.starts_with("\\\\")) return path.size() >= 2 && path[1] == ':' ? 2 : 0;
  const std::size_t share = path.find('\\', 2);
  return share == std::string_view::npos ? path.size() : std::min(path.find('\\', share + 1), path.size());
}

}  // namespace

std::string native_path(std::string_view path) {
  return std::string(path);
}

std::string long_path(std::string_view path) {
  if (path.ends_with(":\\")) return std::string(path);
  std::size_t from = start_of_levels(path);
  std::string result(path.substr(0, from));
  if (path.find_first_of("*?", from) != std::string_view::npos) return {};
  while (from < path.size()) {
    if (path[from] == '\\') {
      if (path.find_first_not_of('\\', from) == std::string_view::npos) break;
      result += '\\';
      ++from;
      continue;
    }
    const std::size_t end = std::min(path.find('\\', from), path.size());
    const Search level(result + std::string(path.substr(from, end - from)));
    if (!level.has_found()) return {};
    result += level.name();
    from = end;
  }
  return result;
}

std::string current_directory(char drive) {
  const std::wstring root = drive != 0 ? std::wstring(1, static_cast<wchar_t>(drive)) + L":" : L".";
  if (drive != 0 && GetDriveTypeW((root + L"\\").c_str()) == DRIVE_NO_ROOT_DIR) return {};
  const DWORD size = GetFullPathNameW(root.c_str(), 0, nullptr, nullptr);
  std::wstring folder(size, L'\0');
  folder.resize(GetFullPathNameW(root.c_str(), size, folder.data(), nullptr));
  return win32::without_separator(utf8(folder));
}

bool file_matches(std::string_view pattern) {
  const std::size_t name_start = std::min(pattern.find_last_of("\\/:"), pattern.size()) + 1;
  const std::size_t start = name_start > pattern.size() ? 0 : name_start;
  // every name is looked at here: the system's own search also goes by the short names of files
  Search search(std::string(pattern.substr(0, start)) + "*");
  if (!search.has_found()) {
    constexpr DWORD nothing_there[] = {ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_DIRECTORY};
    if (std::ranges::find(nothing_there, search.error()) == std::end(nothing_there))
      throw win32::failure_of(search.error());
    return false;
  }
  do {
    if (!search.is_folder() && matches_pattern(search.name(), pattern.substr(start))) return true;
  } while (search.next());
  return false;
}

std::string win32::without_separator(std::string path) {
  if (path.ends_with('\\')) path.pop_back();
  return path;
}

Failure win32::failure_of(DWORD code) {
  switch (code) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_MOD_NOT_FOUND:
      return Failure(Error::file_not_found);
    case ERROR_PATH_NOT_FOUND:
    case ERROR_DIRECTORY:
    case ERROR_BAD_PATHNAME:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_INVALID_DRIVE:
      return Failure(Error::path_not_found);
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
    case ERROR_USER_MAPPED_FILE:
      return Failure(Error::permission_denied);
    case ERROR_INVALID_NAME:
    case ERROR_FILENAME_EXCED_RANGE:
    case ERROR_BUFFER_OVERFLOW:
      return Failure(Error::bad_file_name);
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case ERROR_FILE_TOO_LARGE:
      return Failure(Error::disk_full);
    case ERROR_BAD_EXE_FORMAT:
      return Failure(Error::invalid_argument);
    default:
      return Failure(Error::device_error);
  }
}

}  // namespace platform
