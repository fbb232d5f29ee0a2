#pragma once

#include <span>

#include "automation/event_hub.h"
#include "deskhost/model/desk_object.h"

namespace deskhost {

/// Raises an event of the host; a failure that a handler hands back is reported and stays with the event.
void raise_reported(const Desk& desk, const automation::EventHub& hub, automation::Member event,
                    std::span<automation::Value> args);

}  // namespace deskhost
