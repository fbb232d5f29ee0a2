#pragma once

#include <map>
#include <memory>
#include <string>

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

}  // namespace platform::com
