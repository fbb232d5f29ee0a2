#pragma once

#include <filesystem>

namespace deskhost {

/// A file or folder that goes, with all in it, when this object does, or when the program is interrupted.
class Leftover {
 public:
  explicit Leftover(std::filesystem::path path);
  ~Leftover();
  Leftover(const Leftover&) = delete;
  Leftover& operator=(const Leftover&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const noexcept { return path_; }
  /// It has become something that stays, or has another name.
  void forget();

 private:
  std::filesystem::path path_;
};

/// Removes what is left, for a program that is about to be ended by somebody else.
void remove_leftovers() noexcept;

}  // namespace deskhost
