#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "automation/failure.h"

namespace automation {

class Object;
class Value;

/// A reference to a host object; holding one keeps the object alive.
using Ref = std::shared_ptr<Object>;
/// Values in order, of lower bound 0.
using Array = std::vector<Value>;

/// A record of named members in the order of its type. It is passed by reference: what the callee writes into
/// it, the caller sees.
struct Record {
  std::string type;
  std::vector<std::pair<std::string, Value>> members;

  /// The member of that name, compared exactly; throws Failure(no_such_member).
  Value& at(std::string_view name);
  [[nodiscard]] const Value& at(std::string_view name) const;
};

struct NothingTag {
  friend bool operator==(NothingTag, NothingTag) = default;
};
struct MissingTag {
  friend bool operator==(MissingTag, MissingTag) = default;
};

/// An object reference that refers to no object.
inline constexpr NothingTag nothing{};
/// An optional argument that was left out.
inline constexpr MissingTag missing{};

/// The variant in which every argument and result crosses the boundary to the host. Texts are UTF-8.
class Value {
 public:
  /// In the order of the alternatives.
  enum class Kind { Empty, Nothing, Missing, Bool, I2, I4, R8, Text, Object, Record, Array };

  Value() = default;
  // NOLINTBEGIN(google-explicit-constructor): an argument is a value
  Value(NothingTag tag) : value_(tag) {}
  Value(MissingTag tag) : value_(tag) {}
  Value(bool value) : value_(value) {}
  Value(std::int16_t value) : value_(value) {}
  Value(std::int32_t value) : value_(value) {}
  Value(double value) : value_(value) {}
  Value(std::string value) : value_(std::move(value)) {}
  Value(std::string_view value) : value_(std::string(value)) {}
  Value(const char* value) : value_(std::string(value)) {}
  /// A null reference becomes nothing.
  Value(Ref object);
  Value(std::shared_ptr<Record> record) : value_(std::move(record)) {}
  Value(Array values) : value_(std::make_shared<Array>(std::move(values))) {}
  // NOLINTEND(google-explicit-constructor)

  [[nodiscard]] Kind kind() const noexcept { return static_cast<Kind>(value_.index()); }
  [[nodiscard]] bool is(Kind kind) const noexcept { return this->kind() == kind; }
  /// Boolean, 16-bit, 32-bit or 64-bit float.
  [[nodiscard]] bool is_number() const noexcept { return kind() >= Kind::Bool && kind() <= Kind::R8; }

  /// The conversions of automation. Empty is 0, "" and False; True is -1. A text converts to a number only if
  /// it reads as one in whole (`read_number`); whole numbers round half to even. They throw
  /// Failure(type_mismatch), Failure(overflow) or, for nothing, Failure(object_not_set).
  [[nodiscard]] double to_double() const;
  [[nodiscard]] std::int32_t to_int32() const;
  [[nodiscard]] std::int16_t to_int16() const;
  [[nodiscard]] bool to_bool() const;
  [[nodiscard]] std::string to_text() const;
  /// Null for nothing; throws Failure(object_required) for what is no reference.
  [[nodiscard]] Ref to_object() const;
  /// Never null; throw Failure(type_mismatch).
  [[nodiscard]] std::shared_ptr<Record> to_record() const;
  [[nodiscard]] const Array& to_array() const;

  /// The text in place where the value is one, else null.
  [[nodiscard]] const std::string* text() const noexcept { return std::get_if<std::string>(&value_); }

  /// The comparison of automation: two numbers as numbers, two texts by code point, a number and a text
  /// differ; Empty equals 0 and "". Throws Failure(type_mismatch) for objects, records, arrays and the
  /// missing, and Failure(object_not_set) for nothing.
  friend bool equal(const Value& a, const Value& b);

 private:
  std::variant<std::monostate, NothingTag, MissingTag, bool, std::int16_t, std::int32_t, double, std::string,
               Ref, std::shared_ptr<Record>, std::shared_ptr<Array>>
      value_;
};

/// The name of a kind as a trace has it: "Empty", "I2", "Text", …
const char* name_of(Value::Kind kind) noexcept;

}  // namespace automation
