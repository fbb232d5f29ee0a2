#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "automation/object.h"
#include "platform/com/owners.h"

namespace platform::com {

class RecordLayout;

/// The record types of one type library, found by name and kept.
class RecordTypes {
 public:
  /// `type` is any one of the library; null for none.
  explicit RecordTypes(ComPtr<ITypeInfo> type) : type_(std::move(type)) {}
  /// Throws Failure(type_mismatch) where the library has no such record.
  const RecordLayout& find(const std::string& name);

 private:
  ComPtr<ITypeInfo> type_;
  std::map<std::string, std::shared_ptr<const RecordLayout>> found_;
};

/// Kinds that a value doesn't have become the nearest one it has, or fail with type_mismatch.
automation::Value to_value(const VARIANT& variant);
/// `target` is taken as empty, whatever is in it.
void to_variant(const automation::Value& value, RecordTypes& records, VARIANT& target);

/// Replaces what a variant by reference refers to; a value of another type than there is room for is
/// converted.
void write_through(const VARIANT& target, const automation::Value& value, RecordTypes& records);

/// The arguments of a call into a host: by reference, so that changes come back.
class OutgoingArguments {
 public:
  /// `put`, where it isn't null, is the value of a property.
  OutgoingArguments(automation::Args args, const automation::Value* put, RecordTypes& records);
  OutgoingArguments(const OutgoingArguments&) = delete;
  OutgoingArguments& operator=(const OutgoingArguments&) = delete;

  [[nodiscard]] DISPPARAMS* get() noexcept { return &params_; }
  /// From here on each argument refers to a place of its own type, for a callee that has room for nothing
  /// else.
  void pass_typed() noexcept;
  /// What the callee changed.
  void read_back(automation::Args args);

 private:
  std::vector<Variant> values_;
  std::vector<VARIANT> given_;   // as the values were before the call; owns nothing
  std::vector<VARIANT> passed_;  // last argument first; borrows from values_
  DISPID put_id_ = DISPID_PROPERTYPUT;
  DISPPARAMS params_{};
};

/// The arguments of a call that comes in.
class IncomingArguments {
 public:
  enum class Of { call, put, event };
  /// The first argument of a put is the value of the property. Throws Failure for what isn't a value; an
  /// event is heard all the same, and such an argument of it counts as left out.
  IncomingArguments(DISPPARAMS& params, Of of);

  [[nodiscard]] automation::Args args() noexcept { return values_; }
  [[nodiscard]] const automation::Value& put() const noexcept { return put_; }
  /// Changes go to arguments by reference.
  void write_back(RecordTypes& records);

 private:
  DISPPARAMS& params_;
  automation::Value put_;
  std::vector<automation::Value> values_, before_;
};

}  // namespace platform::com
