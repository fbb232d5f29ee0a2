#include "deskhost/system/leftover.h"

#include <mutex>
#include <set>
#include <utility>

namespace deskhost {
namespace {

struct Register {
  std::mutex mutex;
  std::multiset<std::filesystem::path> paths;
};

/// It outlives what is registered, whatever order static objects end in.
Register& leftovers() {
  static auto* const kept = new Register;
  return *kept;
}

void take_away(const std::filesystem::path& path) noexcept {
  std::error_code ignored;
  std::filesystem::remove_all(path, ignored);
}

}  // namespace

Leftover::Leftover(std::filesystem::path path) : path_(std::move(path)) {
  const std::lock_guard lock(leftovers().mutex);
  leftovers().paths.insert(path_);
}

Leftover::Leftover(const std::function<std::filesystem::path()>& make) {
  const std::lock_guard lock(leftovers().mutex);
  path_ = make();
  leftovers().paths.insert(path_);
}

Leftover::~Leftover() {
  if (path_.empty()) return;
  take_away(path_);
  forget();
}

void Leftover::forget() {
  const std::lock_guard lock(leftovers().mutex);
  auto& paths = leftovers().paths;
  if (const auto found = paths.find(path_); found != paths.end()) paths.erase(found);
  path_.clear();
}

std::unique_lock<std::mutex> hold_leftovers() {
  return std::unique_lock(leftovers().mutex);
}

void remove_leftovers(const std::unique_lock<std::mutex>& /*held*/) noexcept {
  for (const std::filesystem::path& path : leftovers().paths) {
    // The rest of the program goes on meanwhile: what it begins to write into a folder finds none from here
    // on, and what it had begun, or makes the folder anew, may come while that is emptied.
    std::filesystem::path aside = path;
    aside += "-";
    std::error_code ignored;
    std::filesystem::rename(path, aside, ignored);
    constexpr int tries = 10;
    const auto is_there = [&] {
      return std::filesystem::exists(aside, ignored) || std::filesystem::exists(path, ignored);
    };
    for (int i = 0; i < tries && is_there(); ++i) {
      take_away(aside);
      take_away(path);
    }
  }
}

void forget_leftovers(const std::unique_lock<std::mutex>& /*held*/) noexcept {
  leftovers().paths.clear();
}

}  // namespace deskhost
