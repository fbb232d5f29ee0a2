#pragma once

#include <cstdint>

#include "automation/object.h"

/// What a component and the one who loads it agree on where the system has no component runtime of its own.
/// Both sides are built with the same compiler and library: references and failures cross as they are.
namespace platform {

/// Makes the objects of one class; belongs to the component.
class ClassFactory {
 public:
  virtual ~ClassFactory() = default;
  ClassFactory() = default;
  ClassFactory(const ClassFactory&) = delete;
  ClassFactory& operator=(const ClassFactory&) = delete;

  /// A new object, never null; throws Failure.
  virtual automation::Ref create() = 0;
  /// Gives the factory back; it isn't used afterwards.
  virtual void release() = 0;
};

/// The name by which a factory is asked for.
inline constexpr const char* class_factory_interface = "IClassFactory";

/// Result codes of the exported functions, with the numbers of the system that they come from.
namespace code {
inline constexpr std::int32_t success = 0;
inline constexpr std::int32_t no = 1;  ///< success, and the answer is no
inline constexpr std::int32_t no_interface = static_cast<std::int32_t>(0x80004002U);
inline constexpr std::int32_t unexpected = static_cast<std::int32_t>(0x8000ffffU);
inline constexpr std::int32_t class_not_available = static_cast<std::int32_t>(0x80040111U);
}  // namespace code

/// `DllGetClassObject`: on success `*factory` is a `ClassFactory*` that the caller releases, otherwise null.
/// Throws nothing.
using GetClassObject = std::int32_t(const char* class_name, const char* interface_name, void** factory);
/// `DllCanUnloadNow`: `code::success` when no object and no factory of the component is left, else
/// `code::no`.
using CanUnloadNow = std::int32_t();
/// `DllRegisterServer`, `DllUnregisterServer`.
using RegisterServer = std::int32_t();

}  // namespace platform
