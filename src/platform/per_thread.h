#pragma once

#include <memory>
#include <mutex>
#include <unordered_map>

namespace platform {

/// Who the calling thread is among those that live; a later one may be the same as one that ended.
const void* this_thread() noexcept;

/// State that each thread has for itself: a host may hold the component in several apartments at once, each a
/// thread. Nothing of it is bound to a thread's end, which may come after the component was unloaded: it
/// stays until this ends, and a later thread that is the same may find it.
template <class T>
class PerThread {
 public:
  /// That of the calling thread, made at first use.
  T& get() {
    const std::lock_guard lock(mutex_);
    std::unique_ptr<T>& state = states_[this_thread()];
    if (!state) state = std::make_unique<T>();
    return *state;
  }

 private:
  std::mutex mutex_;
  std::unordered_map<const void*, std::unique_ptr<T>> states_;
};

}  // namespace platform
