#pragma once

#include <map>
#include <string>

#include "automation/object.h"
#include "platform/com/owners.h"

/// Both ways across the component runtime. An object belongs to one thread, that of its host.
namespace platform::com {

/// A host object as ours. Holds a reference to `dispatch` of its own, never null.
///
/// Members are called by dispatch ids. They are looked up once for each type and member where the type, by
/// the GUID of its type information, is the object's own and its listed members don't say otherwise; else
/// once for each object. A member that the object doesn't know by `dispatch` is looked for in the other
/// dispatch interfaces of its class. An object of this module that comes back in a value is given as itself,
/// not as a bridge to it.
automation::Ref make_com_object(IDispatch* dispatch);

/// One of our objects as a host's. The result holds the object, never null; while it lives, the same object
/// gives the same interface.
///
/// Every name has an id; whether the object has the member shows at the call. Its type information and the
/// events that it raises are those that the module's own type library (resource 1) has under the object's
/// `type_name`: a dispinterface of that name, and a class of that name and "Class" for its default source.
ComPtr<IDispatch> make_dispatch(const automation::Ref& object);

/// The two as a value has them: what crossed already is unwrapped.
automation::Ref import_object(IDispatch* dispatch);
ComPtr<IDispatch> export_object(const automation::Ref& object);

/// How often the thread's objects of `make_dispatch` were asked for an id, by type and member: "Tool.Name".
using LookUps = std::map<std::string, long>;
const LookUps& look_ups() noexcept;

}  // namespace platform::com
