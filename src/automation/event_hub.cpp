#include "automation/event_hub.h"

#include <algorithm>
#include <vector>

namespace automation {

struct EventHub::Slots {
  std::vector<std::shared_ptr<EventHandler>> handlers;
};

EventHub::EventHub() : slots_(std::make_shared<Slots>()) {}

Binding EventHub::bind(EventHandler handler) {
  auto slot = std::make_shared<EventHandler>(std::move(handler));
  slots_->handlers.push_back(slot);
  return Binding([slots = std::weak_ptr(slots_), slot = std::move(slot)] {
    if (const auto alive = slots.lock()) std::erase(alive->handlers, slot);
  });
}

void EventHub::raise(Member event, std::span<Value> args) const {
  const auto slots = slots_;
  const auto round = slots->handlers;
  for (const auto& handler : round) {
    if (std::ranges::find(slots->handlers, handler) != slots->handlers.end()) (*handler)(event, args);
  }
}

}  // namespace automation
