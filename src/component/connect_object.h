#pragma once

#include "automation/object.h"

namespace component {

/// The name under which a host asks for the add-in.
inline constexpr const char* connect_class = "QVEsprit.Connect";

/// A new Connect as an automation object: its connection interface (OnConnection, OnDisconnection,
/// OnAddInsUpdate, OnStartupComplete, OnBeginShutdown) and its public operations (RefreshQuorvexShapes,
/// GetAppTextFile, PI). Nothing but a Failure leaves it.
automation::Ref make_connect_object();

/// Objects and locks that keep the component in memory.
int objects_alive() noexcept;

}  // namespace component
