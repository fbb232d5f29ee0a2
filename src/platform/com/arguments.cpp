#include "platform/com/arguments.h"

#include <algorithm>

#include "platform/com/record.h"

namespace platform::com {

using automation::Args;
using automation::Error;
using automation::Failure;
using automation::Value;

namespace {

constexpr DISPID most_arguments = 64;

/// Neither replaced nor, where that can be told without looking inside, changed.
bool untouched(const Value& a, const Value& b) {
  if (a.kind() != b.kind()) return false;
  switch (a.kind()) {
    case Value::Kind::Object:
      return a.to_object() == b.to_object();
    case Value::Kind::Record:
    case Value::Kind::Bool:  // a true one may have come in as any number but 0, and goes back as -1
      return false;
    case Value::Kind::Array:
      return &a.to_array() == &b.to_array();
    case Value::Kind::Empty:
    case Value::Kind::Nothing:
    case Value::Kind::Missing:
      return true;
    default:
      return equal(a, b);
  }
}

}  // namespace

OutgoingArguments::OutgoingArguments(Args args, const Value* put, RecordTypes& records)
    : values_(args.size() + (put ? 1 : 0), room_.resource()),
      given_(args.size(), room_.resource()),
      passed_(values_.size(), room_.resource()) {
  for (std::size_t i = 0; i < values_.size(); ++i) {
    const bool is_put = i == args.size();
    VARIANT& value = values_[i].get();
    to_variant(is_put ? *put : args[i], records, value);
    VARIANT& passed = passed_[values_.size() - 1 - i];
    VariantInit(&passed);
    if (is_put || V_VT(&value) == VT_ERROR) {
      passed = value;
    } else if (V_VT(&value) == VT_RECORD) {
      passed = value;
      V_VT(&passed) = VT_BYREF | VT_RECORD;
    } else if (V_VT(&value) & VT_ARRAY) {
      V_VT(&passed) = VT_BYREF | V_VT(&value);
      V_ARRAYREF(&passed) = &V_ARRAY(&value);
    } else {
      V_VT(&passed) = VT_BYREF | VT_VARIANT;
      V_VARIANTREF(&passed) = &value;
    }
  }
  for (std::size_t i = 0; i < given_.size(); ++i) given_[i] = values_[i].get();
  params_ = {passed_.data(), put ? &put_id_ : nullptr, static_cast<UINT>(passed_.size()), put ? 1U : 0U};
}

void OutgoingArguments::pass_typed() noexcept {
  for (VARIANT& passed : passed_) {
    if (V_VT(&passed) != (VT_BYREF | VT_VARIANT)) continue;
    VARIANT& value = *V_VARIANTREF(&passed);
    if (V_VT(&value) == VT_EMPTY) continue;
    V_VT(&passed) = VT_BYREF | V_VT(&value);
    V_BYREF(&passed) = &V_NONE(&value);
  }
}

void OutgoingArguments::read_back(Args args) {
  for (std::size_t i = 0; i < args.size(); ++i) {
    const VARIANT& value = values_[i].get();
    const VARTYPE type = V_VT(&value);
    if (type == VT_ERROR) continue;
    // An object or an array that stayed in its place stays the caller's own, and its record takes the
    // changes.
    const bool is_held = type == VT_DISPATCH || (type & VT_ARRAY);
    if (is_held && type == V_VT(&given_[i]) && V_BYREF(&value) == V_BYREF(&given_[i])) continue;
    if (type == VT_RECORD && args[i].is(Value::Kind::Record)) {
      RecordLayout(ComPtr<IRecordInfo>::share(V_RECORDINFO(&value)))
          .read(V_RECORD(&value), *args[i].to_record());
    } else {
      args[i] = to_value(value);
    }
  }
}

IncomingArguments::IncomingArguments(DISPPARAMS& params, Of of)
    : values_(room_.resource()), before_(room_.resource()), places_(room_.resource()) {
  UINT named = params.cNamedArgs;
  if (of == Of::put) {
    if (params.cArgs == 0) throw Failure(Error::argument_missing);
    put_ = to_value(params.rgvarg[0]);
    named = 1;
  } else if (of == Of::call && named > 0) {
    throw Failure(Error::invalid_argument);
  }
  places_.reserve(params.cArgs);
  values_.reserve(params.cArgs);
  // The named ones stand first, the others behind them from the last to the first.
  for (UINT i = params.cArgs; i > named; --i) places_.push_back(&params.rgvarg[i - 1]);
  for (UINT i = 0; of == Of::event && i < std::min(named, params.cArgs); ++i) {
    const DISPID number = params.rgdispidNamedArgs[i];
    if (number < 0 || number > most_arguments) continue;
    const auto index = static_cast<std::size_t>(number);
    if (index >= places_.size()) places_.resize(index + 1, nullptr);
    places_[index] = &params.rgvarg[i];
  }
  for (const VARIANT* place : places_) {
    values_.emplace_back(automation::missing);
    try {
      if (place != nullptr) values_.back() = to_value(*place);
    } catch (const Failure&) {
      if (of != Of::event) throw;
    }
  }
  before_ = values_;
}

void IncomingArguments::write_back(RecordTypes& records) {
  for (std::size_t i = 0; i < values_.size(); ++i) {
    if (places_[i] != nullptr && (V_VT(places_[i]) & VT_BYREF) && !untouched(values_[i], before_[i]))
      write_through(*places_[i], values_[i], records);
  }
}

}  // namespace platform::com
