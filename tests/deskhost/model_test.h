#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "deskhost/model/document.h"

namespace deskhost {

using automation::Failure;
using automation::Member;
using automation::Value;

inline Value get(automation::Object& object, Member member, std::vector<Value> args = {}) {
  return object.get(member, args);
}
inline Value call(automation::Object& object, Member member, std::vector<Value> args = {}) {
  return object.call(member, args);
}
inline automation::Ref item(automation::Object& object, const Value& key) {
  return get(object, "Item", {key}).to_object();
}
inline void write(Tool& tool, const char* parameter, const Value& value) {
  item(tool, parameter)->put("Value", {}, value);
}
inline Value read(Tool& tool, const char* parameter) {
  return get(*item(tool, parameter), "Value");
}

/// Kind and value, for a comparison that tells 1 from "1" and from 1.0.
inline std::string shown(const Value& value) {
  return std::string(automation::name_of(value.kind())) + ":" + value.to_text();
}

}  // namespace deskhost
