#pragma once

#include "automation/object.h"
#include "platform/com/owners.h"

namespace platform::com {

/// An add-in as its host drives it: the members of the connection interface (OnConnection, OnDisconnection,
/// OnAddInsUpdate, OnStartupComplete, OnBeginShutdown) are called by `IDTExtensibility2`, all others by the
/// object's own dispatch interface. Throws Failure for an object that isn't an add-in.
automation::Ref make_extension_object(const ComPtr<IUnknown>& addin);

}  // namespace platform::com
