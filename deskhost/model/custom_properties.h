#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "deskhost/model/desk_object.h"

namespace deskhost {

/// Type numbers of custom properties.
inline constexpr std::int32_t type_long = 3;
inline constexpr std::int32_t type_double = 5;
inline constexpr std::int32_t type_string = 8;

/// Members: Name, Type, Value.
class CustomProperty final : public DeskObject {
 public:
  /// `tool` is the number of the tool that has the property, 0 for the document. Throws Failure for a type
  /// that isn't one and for a value that doesn't convert to it.
  CustomProperty(int tool, std::string_view name, std::int32_t type, const automation::Value& value);

  [[nodiscard]] std::string trace_name() const override;
  automation::Value get(automation::Member member, automation::Args args) override;
  void put(automation::Member member, automation::Args args, const automation::Value& value) override;

  [[nodiscard]] const std::string& name() const noexcept { return name_; }
  [[nodiscard]] std::int32_t type() const noexcept { return type_; }
  [[nodiscard]] const automation::Value& value() const noexcept { return value_; }
  /// Throws Failure for a value that doesn't convert; the old one stays.
  void set(const automation::Value& value);

 private:
  std::string name_;
  automation::Value value_;
  std::int32_t type_;
  int tool_;
};

/// Members: Count, Item(name: a property or nothing; or index from 1), Add(name, caption, type, start value),
/// Remove(name).
class CustomProperties final : public DeskObject {
 public:
  explicit CustomProperties(int tool) : tool_(tool) {}

  [[nodiscard]] std::string trace_name() const override;
  automation::Value get(automation::Member member, automation::Args args) override;
  automation::Value call(automation::Member member, automation::Args args) override;

  [[nodiscard]] const std::vector<std::shared_ptr<CustomProperty>>& all() const noexcept { return all_; }
  /// Null for a missing name.
  [[nodiscard]] std::shared_ptr<CustomProperty> find(std::string_view name) const noexcept;
  /// Throws Failure for a name that is there already, and as the property's constructor does.
  std::shared_ptr<CustomProperty> add(std::string_view name, std::int32_t type,
                                      const automation::Value& value);

 private:
  std::vector<std::shared_ptr<CustomProperty>> all_;
  int tool_;
};

}  // namespace deskhost
