#pragma once

#include <windows.h>

#include <string>

#include "automation/failure.h"

/// What the Windows sources share about paths, handles and failing calls.
namespace platform::win32 {

/// A handle of the system that is closed at the end; both of the system's marks for "none" are one here.
class Handle {
 public:
  explicit Handle(HANDLE handle) : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
  ~Handle() {
    if (handle_ != nullptr) CloseHandle(handle_);
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  explicit operator bool() const { return handle_ != nullptr; }
  [[nodiscard]] HANDLE get() const { return handle_; }
  HANDLE release() {
    const HANDLE handle = handle_;
    handle_ = nullptr;
    return handle;
  }

 private:
  HANDLE handle_;
};

/// What a user is told when a call on a file has failed with this code of the system.
automation::Failure failure_of(DWORD code);

/// `path` without its closing backslash.
std::string without_separator(std::string path);

}  // namespace platform::win32
