#pragma once

#include "platform/com/convert.h"

namespace platform::com {

/// What the type library of this module says of a type; empty references where it says nothing.
struct OwnType {
  explicit OwnType(const std::string& name);

  ComPtr<ITypeInfo> info;
  ComPtr<ITypeInfo> class_info;
  /// The events.
  ComPtr<ITypeInfo> source;
  RecordTypes records;
};

/// The calling thread's. Kept for the module's time.
OwnType& own_type(const std::string& name);

}  // namespace platform::com
