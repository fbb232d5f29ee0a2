#pragma once

#include <filesystem>
#include <functional>
#include <mutex>

namespace deskhost {

/// A file or folder that goes, with all in it, when this object does, or when the program is interrupted.
class Leftover {
 public:
  explicit Leftover(std::filesystem::path path);
  /// Of what `make` makes; no interruption comes between. Throws what `make` throws.
  explicit Leftover(const std::function<std::filesystem::path()>& make);
  ~Leftover();
  Leftover(const Leftover&) = delete;
  Leftover& operator=(const Leftover&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const noexcept { return path_; }
  /// It has become something that stays, or has another name.
  void forget();

 private:
  std::filesystem::path path_;
};

/// While it lives, nothing becomes a leftover or ceases to be one in another thread.
[[nodiscard]] std::unique_lock<std::mutex> hold_leftovers();
/// Removes what is left, for a program that is about to be ended by somebody else.
void remove_leftovers(const std::unique_lock<std::mutex>& held) noexcept;
/// For a process that was forked: they are its parent's.
void forget_leftovers(const std::unique_lock<std::mutex>& held) noexcept;

}  // namespace deskhost
