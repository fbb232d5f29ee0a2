#include <windows.h>

// windows.h has to come first
#include <shlwapi.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "automation/failure.h"
#include "platform/files.h"
#include "platform/text.h"
#include "platform/win32/path_win32.h"
#include "platform/win32/text_win32.h"

namespace platform {
namespace {

using automation::Error;
using automation::Failure;
using win32::failure_of;
using win32::Handle;
using win32::wide;

constexpr DWORD largest_piece = 1U << 20U;

// The code of the last failing call is read before anything else can change it.
Failure last_failure() {
  return failure_of(GetLastError());
}

void write_all(HANDLE file, std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD count = 0;
    const auto piece = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), largest_piece));
    if (!WriteFile(file, bytes.data(), piece, &count, nullptr)) throw last_failure();
    bytes.remove_prefix(count);
  }
}

HANDLE handle_of(long long kept) {
  return reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(kept));  // NOLINT(performance-no-int-to-ptr)
}

}  // namespace

bool file_exists(std::string_view path) {
  return PathFileExistsA(to_code_page(path).c_str()) != FALSE;
}

void delete_file(std::string_view path) {
  if (!DeleteFileW(wide(path).c_str())) throw last_failure();
}

std::string read_file(std::string_view path) {
  // others may go on with the file meanwhile
  constexpr DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const Handle file(CreateFileW(wide(path).c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr));
  if (!file) throw last_failure();
  // a device or a pipe may never end
  if (GetFileType(file.get()) != FILE_TYPE_DISK) throw Failure(Error::permission_denied);
  LARGE_INTEGER size{};
  if (!GetFileSizeEx(file.get(), &size)) throw last_failure();
  // the size is a guess: a file can grow meanwhile
  std::string bytes(static_cast<std::size_t>(size.QuadPart) + 1, '\0');
  std::size_t filled = 0;
  for (;;) {
    if (filled == bytes.size()) bytes.resize(bytes.size() * 2);
    const auto room = static_cast<DWORD>(std::min<std::size_t>(bytes.size() - filled, largest_piece));
    DWORD count = 0;
    if (!ReadFile(file.get(), bytes.data() + filled, room, &count, nullptr)) throw last_failure();
    if (count == 0) break;
    filled += count;
  }
  bytes.resize(filled);
  return bytes;
}

OutputFile::OutputFile(std::string_view path) {
  constexpr DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE;
  Handle file(CreateFileW(wide(path).c_str(), GENERIC_WRITE, share, nullptr, CREATE_ALWAYS,
                          FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) throw last_failure();
  handle_ = reinterpret_cast<LONG_PTR>(file.release());
}

OutputFile::OutputFile(OutputFile&& other) noexcept : handle_(std::exchange(other.handle_, closed)) {}

OutputFile& OutputFile::operator=(OutputFile&& other) noexcept {
  if (this != &other) {
    if (is_open()) CloseHandle(handle_of(handle_));
    handle_ = std::exchange(other.handle_, closed);
  }
  return *this;
}

OutputFile::~OutputFile() {
  if (is_open()) CloseHandle(handle_of(handle_));
}

void OutputFile::write(std::string_view bytes) {
  if (!is_open()) throw Failure(Error::bad_file_name);
  write_all(handle_of(handle_), bytes);
}

void OutputFile::close() {
  if (is_open() && !CloseHandle(handle_of(std::exchange(handle_, closed)))) throw last_failure();
}

namespace {

// A link's target, so that the link stays one.
std::wstring final_target(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return path;
  const Handle file(CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                nullptr, OPEN_EXISTING, 0, nullptr));
  if (!file) throw last_failure();
  std::wstring target(GetFinalPathNameByHandleW(file.get(), nullptr, 0, 0), L'\0');
  target.resize(GetFinalPathNameByHandleW(file.get(), target.data(), static_cast<DWORD>(target.size()), 0));
  return target.empty() ? path : target;
}

// The file that will take the target's place; it is gone at the end unless it did.
class Replacement {
 public:
  explicit Replacement(const std::wstring& target)
      : path_(target + L".new" + std::to_wstring(GetCurrentProcessId())) {}
  ~Replacement() {
    if (!path_.empty()) DeleteFileW(path_.c_str());
  }
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  void write(std::string_view bytes) const {
    const Handle file(
        CreateFileW(path_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) throw last_failure();
    write_all(file.get(), bytes);
    if (!FlushFileBuffers(file.get())) throw last_failure();
  }
  // Who may do what with the file stays as it was.
  void take_permissions(const std::wstring& target) const {
    constexpr SECURITY_INFORMATION wanted = DACL_SECURITY_INFORMATION;
    DWORD size = 0;
    GetFileSecurityW(target.c_str(), wanted, nullptr, 0, &size);
    std::vector<char> descriptor(size);
    if (size == 0 || !GetFileSecurityW(target.c_str(), wanted, descriptor.data(), size, &size)) return;
    if (!SetFileSecurityW(path_.c_str(), wanted, descriptor.data())) throw last_failure();
  }
  void become(const std::wstring& target, DWORD attributes) {
    if (attributes != INVALID_FILE_ATTRIBUTES) SetFileAttributesW(path_.c_str(), attributes);
    if (!MoveFileExW(path_.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
      throw last_failure();
    path_.clear();
  }

 private:
  std::wstring path_;
};

}  // namespace

void replace_file(std::string_view path, std::string_view bytes) {
  const std::wstring target = final_target(wide(path));
  const DWORD attributes = GetFileAttributesW(target.c_str());
  const bool there = attributes != INVALID_FILE_ATTRIBUTES;
  if (there && (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0)
    throw Failure(Error::permission_denied);
  Replacement replacement(target);
  replacement.write(bytes);
  if (there) replacement.take_permissions(target);
  replacement.become(target, attributes);
}

}  // namespace platform
