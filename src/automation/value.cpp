#include "automation/value.h"

#include <algorithm>
#include <array>

#include "automation/number.h"
#include "automation/object.h"

namespace automation {
namespace {

bool same_text_regardless_of_case(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  return std::ranges::equal(a, b, {}, lower, lower);
}

}  // namespace

Value& Record::at(std::string_view name) {
  const auto found =
      std::ranges::find(members, name, [](const auto& member) -> const std::string& { return member.first; });
  if (found == members.end()) throw Failure(Error::no_such_member);
  return found->second;
}

const Value& Record::at(std::string_view name) const {
  return const_cast<Record*>(this)->at(name);
}

Value::Value(Ref object) {
  if (object) {
    value_ = std::move(object);
  } else {
    value_ = nothing;
  }
}

double Value::to_double() const {
  switch (kind()) {
    case Kind::Empty:
      return 0;
    case Kind::Bool:
      return std::get<bool>(value_) ? -1 : 0;
    case Kind::I2:
      return std::get<std::int16_t>(value_);
    case Kind::I4:
      return std::get<std::int32_t>(value_);
    case Kind::R8:
      return std::get<double>(value_);
    case Kind::Text: {
      const auto number = read_number(std::get<std::string>(value_));
      if (!number) throw Failure(Error::type_mismatch);
      return *number;
    }
    case Kind::Nothing:
      throw Failure(Error::object_not_set);
    default:
      throw Failure(Error::type_mismatch);
  }
}

std::int32_t Value::to_int32() const {
  if (const auto* whole = std::get_if<std::int32_t>(&value_)) return *whole;
  return automation::to_int32(to_double());
}

std::int16_t Value::to_int16() const {
  return automation::to_int16(to_double());
}

bool Value::to_bool() const {
  if (const auto* text = this->text()) {
    if (same_text_regardless_of_case(*text, "True")) return true;
    if (same_text_regardless_of_case(*text, "False")) return false;
  }
  return to_double() != 0;
}

std::string Value::to_text() const {
  switch (kind()) {
    case Kind::Empty:
      return {};
    case Kind::Bool:
      return std::get<bool>(value_) ? "True" : "False";
    case Kind::I2:
      return std::to_string(std::get<std::int16_t>(value_));
    case Kind::I4:
      return std::to_string(std::get<std::int32_t>(value_));
    case Kind::R8:
      return plain_text(std::get<double>(value_));
    case Kind::Text:
      return std::get<std::string>(value_);
    case Kind::Nothing:
      throw Failure(Error::object_not_set);
    default:
      throw Failure(Error::type_mismatch);
  }
}

Ref Value::to_object() const {
  if (const auto* object = std::get_if<Ref>(&value_)) return *object;
  if (is(Kind::Nothing)) return nullptr;
  throw Failure(Error::object_required);
}

std::shared_ptr<Record> Value::to_record() const {
  if (const auto* record = std::get_if<std::shared_ptr<Record>>(&value_)) return *record;
  throw Failure(Error::type_mismatch);
}

const Array& Value::to_array() const {
  if (const auto* values = std::get_if<std::shared_ptr<Array>>(&value_)) return **values;
  throw Failure(Error::type_mismatch);
}

bool equal(const Value& a, const Value& b) {
  using Kind = Value::Kind;
  for (const Value* side : {&a, &b}) {
    if (side->is(Kind::Nothing)) throw Failure(Error::object_not_set);
    if (side->is(Kind::Missing) || side->kind() >= Kind::Object) throw Failure(Error::type_mismatch);
  }
  const bool a_is_text = a.is(Kind::Text);
  const bool b_is_text = b.is(Kind::Text);
  if (a_is_text && b_is_text) return *a.text() == *b.text();
  if (a_is_text) return b.is(Kind::Empty) && a.text()->empty();
  if (b_is_text) return a.is(Kind::Empty) && b.text()->empty();
  return a.to_double() == b.to_double();
}

const char* name_of(Value::Kind kind) noexcept {
  constexpr std::array<const char*, 11> names{"Empty", "Nothing", "Missing", "Bool",   "I2",   "I4",
                                              "R8",    "Text",    "Object",  "Record", "Array"};
  return names[static_cast<std::size_t>(kind)];
}

}  // namespace automation
