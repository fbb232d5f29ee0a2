#pragma once

#include <windows.h>

namespace component {

/// For whom the component is registered: everybody (which takes an administrator's rights), or the current
/// user.
enum class Scope { everybody, user };

/// Enters class, type library and interfaces, or takes them out; result codes of the system. A registration
/// that can't be entered as a whole is taken out again. Taken out is what names this file, with success where
/// there is none: the other width's entries stay, and those of another folder.
///
/// The system's own functions for type libraries aren't used: they enter and take out every interface of the
/// library, and IDTExtensibility2 is in common with all add-ins of the machine.
HRESULT register_component(Scope scope) noexcept;
HRESULT unregister_component(Scope scope) noexcept;

/// The identifier of the class Connect, as the type library has it.
CLSID connect_class_id();

}  // namespace component
