#pragma once

#include <windows.h>

namespace component {

/// For whom the component is registered: everybody (which takes an administrator's rights), or the current
/// user.
enum class Scope { everybody, user };

/// Enters class and type library, or takes them out; result codes of the system. A registration that can't be
/// entered as a whole is taken out again. What isn't there is taken out with success.
HRESULT register_component(Scope scope) noexcept;
HRESULT unregister_component(Scope scope) noexcept;

/// The identifier of the class Connect, as the type library has it.
CLSID connect_class_id();

}  // namespace component
