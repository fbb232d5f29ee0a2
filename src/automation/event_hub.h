#pragma once

#include <memory>

#include "automation/event.h"

namespace automation {

/// A source of events: hands out bindings and raises events to those that live.
class EventHub : public Events {
 public:
  EventHub();

  [[nodiscard]] Binding bind(EventHandler handler) override;

  /// Calls the handlers in the order of binding, at once. A handler that is bound or unbound meanwhile takes
  /// part from the next event on, or no more. The first Failure of a handler ends the round and is handed on.
  void raise(Member event, std::span<Value> args) const;

 private:
  struct Slots;
  std::shared_ptr<Slots> slots_;  // shared, so that a handler may end the source
};

}  // namespace automation
