#pragma once

#include <vector>

#include "platform/com/owners.h"

/// What type information tells of an object and its class.
namespace platform::com {

/// GUID_NULL for a type without one.
GUID guid_of(ITypeInfo* info) noexcept;

/// How many functions and variables a type lists. Some libraries count the seven functions of IDispatch, too.
UINT functions_of(ITypeInfo* info) noexcept;
UINT variables_of(ITypeInfo* info) noexcept;

/// The dispatch interface that a class raises events through; null for none.
ComPtr<ITypeInfo> default_source(ITypeInfo* class_info);

/// The class that an object tells of itself; null where it tells none.
ComPtr<ITypeInfo> told_class_of(IDispatch* object);

/// The dispatch interfaces that an object has by its class, apart from `type` (null for none): of the class
/// that it tells, or else of those classes in the type's library that offer the type. Whether it has them the
/// object shows.
std::vector<IID> other_faces_of(IDispatch* object, ITypeInfo* type);

}  // namespace platform::com
