#include "deskhost/model/custom_properties.h"

#include <algorithm>

#include "deskhost/model/index.h"

namespace deskhost {

using automation::Args;
using automation::Error;
using automation::Failure;
using automation::id;
using automation::Member;
using automation::Value;

namespace {

std::string owner_name(int tool) {
  return tool == 0 ? "Document" : "Tool(" + std::to_string(tool) + ")";
}

Value converted(std::int32_t type, const Value& value) {
  switch (type) {
    case type_long:
      return value.to_int32();
    case type_double:
      return finite_number(value);
    case type_string:
      return value.to_text();
    default:
      throw Failure(Error::invalid_argument);
  }
}

}  // namespace

CustomProperty::CustomProperty(int tool, std::string_view name, std::int32_t type, const Value& value)
    : name_(name), value_(converted(type, value)), type_(type), tool_(tool) {}

std::string CustomProperty::trace_name() const {
  return owner_name(tool_) + ".CustomProperties." + name_;
}

Value CustomProperty::get(Member member, Args args) {
  switch (member.id()) {
    case id("Name"):
      return name_;
    case id("Type"):
      return type_;
    case id("Value"):
      return value_;
    default:
      return DeskObject::get(member, args);
  }
}

void CustomProperty::put(Member member, Args args, const Value& value) {
  if (member.id() != id("Value")) return DeskObject::put(member, args, value);
  set(value);
}

void CustomProperty::set(const Value& value) {
  value_ = converted(type_, value);
}

std::string CustomProperties::trace_name() const {
  return owner_name(tool_) + ".CustomProperties";
}

Value CustomProperties::get(Member member, Args args) {
  switch (member.id()) {
    case id("Count"):
      return static_cast<std::int32_t>(all_.size());
    case id("Item"): {
      const Value& key = argument(args, 0);
      if (const std::string* name = key.text()) return Value(find(*name));
      return Value(all_[index_of(key, all_.size())]);
    }
    default:
      return DeskObject::get(member, args);
  }
}

Value CustomProperties::call(Member member, Args args) {
  switch (member.id()) {
    case id("Add"):
      return Value(add(argument(args, 0).to_text(), argument(args, 2).to_int32(), argument(args, 3)));
    case id("Remove"): {
      const auto property = find(argument(args, 0).to_text());
      if (!property) throw Failure(Error::invalid_argument);
      std::erase(all_, property);
      return {};
    }
    default:
      return DeskObject::call(member, args);
  }
}

std::shared_ptr<CustomProperty> CustomProperties::find(std::string_view name) const noexcept {
  const auto found = std::ranges::find(
      all_, name, [](const auto& property) -> std::string_view { return property->name(); });
  return found == all_.end() ? nullptr : *found;
}

std::shared_ptr<CustomProperty> CustomProperties::add(std::string_view name, std::int32_t type,
                                                      const Value& value) {
  if (find(name)) throw Failure(Error::invalid_argument);
  return all_.emplace_back(std::make_shared<CustomProperty>(tool_, name, type, value));
}

}  // namespace deskhost
