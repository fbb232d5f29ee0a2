#pragma once

#include "host/custom_property.h"

namespace host {

class ToolParameter : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] automation::Value Value() const { return get("Value"); }
  void Value(const automation::Value& value) const { put("Value", value); }
  void ValueMarked(bool marked) const { put("ValueMarked", marked); }
  /// The host's number of the parameter.
  [[nodiscard]] std::int16_t Code() const { return get("Code").to_int16(); }
};

/// A tool as its parameters.
class ToolParameters : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] std::int32_t Count() const { return get("Count").to_int32(); }
  [[nodiscard]] ToolParameter Item(std::string_view name) const { return child<ToolParameter>("Item", name); }
  /// `number` counts from 1.
  [[nodiscard]] ToolParameter Item(std::int32_t number) const { return child<ToolParameter>("Item", number); }
  [[nodiscard]] std::int16_t Kind() const { return get("Kind").to_int16(); }
  void Flag(bool flag) const { put("Flag", flag); }
};

class Tool : public WithCustomProperties {
 public:
  using WithCustomProperties::WithCustomProperties;
  [[nodiscard]] std::string Name() const { return get("Name").to_text(); }
  [[nodiscard]] std::int32_t Style() const { return get("Style").to_int32(); }
  [[nodiscard]] std::int32_t Number() const { return get("Number").to_int32(); }
  [[nodiscard]] std::int32_t Turret() const { return get("Turret").to_int32(); }
  [[nodiscard]] std::int32_t Station() const { return get("Station").to_int32(); }
  void ToolShiftX(double length) const { put("ToolShiftX", length); }
  void ToolShiftY(double length) const { put("ToolShiftY", length); }
  void ToolShiftZ(double length) const { put("ToolShiftZ", length); }
  /// The same object, seen as its parameters; no host call.
  [[nodiscard]] host::ToolParameters ToolParameters() const { return host::ToolParameters(ref()); }
};

/// The tools of a document; the source of OnCreate, OnDelete and OnModify.
class Tools : public Collection<Tool> {
 public:
  using Collection::Collection;
  using Collection::Item;
  /// The first tool whose ToolID is that text; fails where there is none.
  [[nodiscard]] Tool Item(std::string_view tool_id) const { return child<Tool>("Item", tool_id); }
  void Add(const ToolParameters& tool) const { call("Add", tool.ref()); }
  void Remove(std::string_view name) const { call("Remove", name); }
};

class ToolFactory : public Facade {
 public:
  using Facade::Facade;
  /// A tool that stands in no document yet.
  [[nodiscard]] ToolParameters Create(std::int32_t tool_class, std::int32_t unit) const {
    return ToolParameters(call("Create", tool_class, unit).to_object());
  }
};

}  // namespace host
