#pragma once

#include <functional>
#include <span>
#include <utility>

#include "automation/member.h"
#include "automation/value.h"

namespace automation {

/// Called with the event's name and its arguments; an argument that the handler changes goes back to the
/// source. A Failure that leaves the handler goes back to the source too.
using EventHandler = std::function<void(Member event, std::span<Value> args)>;

/// A subscription: while it lives, the handler hears the source. It doesn't keep the source alive.
class Binding {
 public:
  Binding() = default;
  /// `unbind` is called once, at the end; it must not throw.
  explicit Binding(std::function<void()> unbind) : unbind_(std::move(unbind)) {}
  Binding(Binding&& other) noexcept : unbind_(std::exchange(other.unbind_, nullptr)) {}
  Binding& operator=(Binding&& other) noexcept {
    if (this != &other) {
      release();
      unbind_ = std::exchange(other.unbind_, nullptr);
    }
    return *this;
  }
  Binding(const Binding&) = delete;
  Binding& operator=(const Binding&) = delete;
  ~Binding() { release(); }

  /// Ends the subscription; harmless the second time.
  void release() noexcept {
    if (const auto unbind = std::exchange(unbind_, nullptr)) unbind();
  }

 private:
  std::function<void()> unbind_;
};

/// What an object that raises events offers.
class Events {
 public:
  virtual ~Events() = default;
  Events() = default;
  Events(const Events&) = delete;
  Events& operator=(const Events&) = delete;

  /// Throws Failure where the source refuses.
  [[nodiscard]] virtual Binding bind(EventHandler handler) = 0;
};

}  // namespace automation
