#pragma once

#include "automation/event.h"
#include "platform/com/owners.h"

namespace platform::com {

/// Binds the events of a host object's default source. The source gets a sink that holds the handler and
/// nothing else, and none of it after the binding's end: an event that comes late is passed over. Throws
/// Failure where the object doesn't tell its source, or refuses.
automation::Binding bind_events(IDispatch* object, automation::EventHandler handler);

}  // namespace platform::com
