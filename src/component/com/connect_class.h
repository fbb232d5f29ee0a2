#pragma once

#include "platform/com/owners.h"

namespace component {

/// A new Connect as a host has it: `_Connect` for callers outside, `IDTExtensibility2` for the host. Throws
/// Failure.
platform::com::ComPtr<IUnknown> make_connect_class();

}  // namespace component
