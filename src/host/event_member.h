#pragma once

#include <string_view>

#include "automation/object.h"

namespace host {

/// A member that receives an object's events for exactly as long as it holds the object.
template <class View>
class EventMember {
 public:
  explicit EventMember(automation::EventHandler handler) : handler_(std::move(handler)) {}

  /// Gives up the object held before, then binds the new one. Throws Failure where the source refuses; the
  /// member is nothing then.
  void set(View object) {
    release();
    if (object.is_nothing()) return;
    automation::Events* events = object.ref()->events();
    if (events == nullptr) throw automation::Failure(automation::Error::no_such_member);
    binding_ = events->bind(handler_);
    object_ = std::move(object);
  }
  /// Unbinds first, then gives the object up; harmless the second time.
  void release() noexcept {
    binding_.release();
    object_.release();
  }

  [[nodiscard]] const View& operator*() const noexcept { return object_; }
  [[nodiscard]] const View* operator->() const noexcept { return &object_; }

 private:
  automation::EventHandler handler_;
  View object_;
  automation::Binding binding_;
};

}  // namespace host
