#pragma once

#include <span>
#include <string>

#include "automation/event.h"
#include "automation/member.h"
#include "automation/value.h"

namespace automation {

/// Arguments of one call, in order. An argument that the callee changes comes back changed.
using Args = std::span<Value>;

/// An object of the host as a late-bound caller sees it: members by name, regardless of case. Every operation
/// throws Failure: for a member that the object doesn't have, and for whatever the member itself refuses.
class Object {
 public:
  virtual ~Object() = default;
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  virtual Value get(Member member, Args args) = 0;
  virtual void put(Member member, Args args, const Value& value) = 0;
  virtual Value call(Member member, Args args) = 0;

  /// The name of the object's class, the same for all of its objects; empty where it has none to tell.
  [[nodiscard]] virtual std::string type_name() const { return {}; }

  /// Where the object's events can be had; null for an object that raises none. Owned by the object.
  virtual Events* events() noexcept { return nullptr; }
};

}  // namespace automation
