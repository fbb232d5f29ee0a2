#include "deskhost/model/events.h"

namespace deskhost {

void raise_reported(const Desk& desk, const automation::EventHub& hub, automation::Member event,
                    std::span<automation::Value> args) {
  try {
    hub.raise(event, args);
  } catch (const automation::Failure& failure) {
    if (desk.failure_of_event) desk.failure_of_event(event.name(), failure.what());
  }
}

}  // namespace deskhost
