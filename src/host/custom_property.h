#pragma once

#include "host/facade.h"

namespace host {

/// Type numbers of custom properties.
inline constexpr std::int32_t type_long = 3;
inline constexpr std::int32_t type_double = 5;
inline constexpr std::int32_t type_string = 8;

class CustomProperty : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] automation::Value Value() const { return get("Value"); }
  void Value(const automation::Value& value) const { put("Value", value); }
  [[nodiscard]] std::int32_t Type() const { return get("Type").to_int32(); }
};

class CustomProperties : public Facade {
 public:
  using Facade::Facade;
  /// Nothing for a name that isn't there.
  [[nodiscard]] CustomProperty Item(std::string_view name) const {
    return child<CustomProperty>("Item", name);
  }
  CustomProperty Add(std::string_view name, std::int32_t type, const automation::Value& start) const {
    return CustomProperty(call("Add", name, name, type, start).to_object());
  }
  void Remove(std::string_view name) const { call("Remove", name); }
};

/// Any host object that carries custom properties.
class WithCustomProperties : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] host::CustomProperties CustomProperties() const {
    return child<host::CustomProperties>("CustomProperties");
  }
};

}  // namespace host
