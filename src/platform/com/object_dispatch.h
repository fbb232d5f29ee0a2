#pragma once

#include <memory>

#include "automation/object.h"
#include "platform/com/owners.h"

/// The parts of an object's bridge outwards.
namespace platform::com {

/// The object that `make_dispatch` of this module bridges; null for an interface from elsewhere.
automation::Ref object_behind(IDispatch* dispatch);

/// An enumerator over the values of an array; a Failure where `values` is none.
ComPtr<IUnknown> make_enumerator(const automation::Value& values);

/// The place where sinks for an object's events are entered; the events' names and ids are those of `source`.
ComPtr<IConnectionPoint> make_connection_point(const automation::Ref& object, ComPtr<ITypeInfo> source);

}  // namespace platform::com
