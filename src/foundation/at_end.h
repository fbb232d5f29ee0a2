#pragma once

#include <utility>

/// Does something at the end of its scope, whichever way the scope is left. What it does must not throw.
template <class Action>
class AtEnd {
 public:
  explicit AtEnd(Action action) : action_(std::move(action)) {}
  ~AtEnd() { action_(); }
  AtEnd(const AtEnd&) = delete;
  AtEnd& operator=(const AtEnd&) = delete;

 private:
  Action action_;
};
