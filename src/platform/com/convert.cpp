#include "platform/com/convert.h"

#include <algorithm>
#include <cstring>

#include "platform/com/bridge.h"
#include "platform/com/record.h"
#include "platform/com/result.h"

namespace platform::com {

using automation::Array;
using automation::Error;
using automation::Failure;
using automation::Value;

namespace {

/// A variant as one of another type; the system's rules, apart from any locale.
Variant changed(const VARIANT& variant, VARTYPE type) {
  constexpr LCID invariant = 0x007f;
  Variant result;
  check(VariantChangeTypeEx(result.out(), const_cast<VARIANT*>(&variant), invariant, VARIANT_NOUSEROVERRIDE,
                            type));
  return result;
}

Value array_to_value(SAFEARRAY* array, VARTYPE element) {
  if (array == nullptr) return Array{};
  LONG first = 0, last = -1;
  if (SafeArrayGetDim(array) != 1) throw Failure(Error::type_mismatch);
  check(SafeArrayGetLBound(array, 1, &first));
  check(SafeArrayGetUBound(array, 1, &last));
  if (element == VT_RECORD) return records_to_value(array, static_cast<std::size_t>(last - first + 1));
  Array values;
  values.reserve(static_cast<std::size_t>(last - first + 1));
  for (LONG i = first; i <= last; ++i) {
    Variant one;
    void* place = &one.get();
    if (element != VT_VARIANT) {
      V_VT(&one.get()) = element;
      place = &V_NONE(&one.get());
    }
    check(SafeArrayGetElement(array, &i, place));
    values.push_back(to_value(one.get()));
  }
  return values;
}

Value unknown_to_value(IUnknown* unknown) {
  if (unknown == nullptr) return automation::nothing;
  const auto dispatch = ComPtr<IUnknown>::share(unknown).as<IDispatch>();
  if (!dispatch) throw Failure(Error::type_mismatch);
  return import_object(dispatch.get());
}

Value scalar_to_value(const VARIANT& variant) {
  switch (V_VT(&variant)) {
    case VT_I1:
    case VT_UI1:
      return V_I2(&changed(variant, VT_I2).get());
    case VT_UI2:
    case VT_INT:
      return static_cast<std::int32_t>(V_I4(&changed(variant, VT_I4).get()));
    // A whole number beyond 32 bits keeps its value as far as a float has it.
    case VT_UI4:
    case VT_UINT:
    case VT_I8:
    case VT_UI8:
    case VT_R4:
    case VT_CY:
    case VT_DATE:
    case VT_DECIMAL:
      return V_R8(&changed(variant, VT_R8).get());
    default:
      throw Failure(Error::type_mismatch);
  }
}

Value reference_to_value(const VARIANT& variant) {
  const VARTYPE type = V_VT(&variant) & ~VT_BYREF;
  if (V_BYREF(&variant) == nullptr) throw Failure(Error::type_mismatch);
  if (type == VT_VARIANT) return to_value(*V_VARIANTREF(&variant));
  if (type == VT_RECORD) return record_to_value(V_RECORDINFO(&variant), V_RECORD(&variant));
  if (type & VT_ARRAY) return array_to_value(*V_ARRAYREF(&variant), type & VT_TYPEMASK);
  Variant content;
  check(VariantCopyInd(content.out(), const_cast<VARIANT*>(&variant)));
  return to_value(content.get());
}

void array_to_variant(const Array& values, RecordTypes& records, VARIANT& target) {
  const auto is_record = [](const Value& value) { return value.is(Value::Kind::Record); };
  if (!values.empty() && std::ranges::all_of(values, is_record)) {
    return records_to_variant(values, records, target);
  }
  SafeArray array(SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(values.size())));
  {
    const ArrayAccess access(array.get());
    auto* element = static_cast<VARIANT*>(access.data());
    if (element == nullptr) throw std::bad_alloc();
    for (const Value& value : values) to_variant(value, records, *element++);
  }
  V_VT(&target) = VT_ARRAY | VT_VARIANT;
  V_ARRAY(&target) = array.detach();
}

}  // namespace

Value to_value(const VARIANT& variant) {
  const VARTYPE type = V_VT(&variant);
  if (type & VT_BYREF) return reference_to_value(variant);
  if (type & VT_ARRAY) return array_to_value(V_ARRAY(&variant), type & VT_TYPEMASK);
  switch (type) {
    case VT_EMPTY:
    case VT_NULL:
      return {};
    case VT_ERROR:
      if (V_ERROR(&variant) == DISP_E_PARAMNOTFOUND) return automation::missing;
      throw Failure(Error::type_mismatch);
    case VT_BOOL:
      return V_BOOL(&variant) != VARIANT_FALSE;
    case VT_I2:
      return static_cast<std::int16_t>(V_I2(&variant));
    case VT_I4:
      return static_cast<std::int32_t>(V_I4(&variant));
    case VT_R8:
      return V_R8(&variant);
    case VT_BSTR:
      return Bstr::utf8_of(V_BSTR(&variant));
    case VT_DISPATCH:
      return V_DISPATCH(&variant) ? Value(import_object(V_DISPATCH(&variant))) : Value(automation::nothing);
    case VT_UNKNOWN:
      return unknown_to_value(V_UNKNOWN(&variant));
    case VT_RECORD:
      return record_to_value(V_RECORDINFO(&variant), V_RECORD(&variant));
    default:
      return scalar_to_value(variant);
  }
}

void to_variant(const Value& value, RecordTypes& records, VARIANT& target) {
  VariantInit(&target);
  switch (value.kind()) {
    case Value::Kind::Empty:
      return;
    case Value::Kind::Nothing:
      V_VT(&target) = VT_DISPATCH;
      V_DISPATCH(&target) = nullptr;
      return;
    case Value::Kind::Missing:
      V_VT(&target) = VT_ERROR;
      V_ERROR(&target) = DISP_E_PARAMNOTFOUND;
      return;
    case Value::Kind::Bool:
      V_VT(&target) = VT_BOOL;
      V_BOOL(&target) = value.to_bool() ? VARIANT_TRUE : VARIANT_FALSE;
      return;
    case Value::Kind::I2:
      V_VT(&target) = VT_I2;
      V_I2(&target) = value.to_int16();
      return;
    case Value::Kind::I4:
      V_VT(&target) = VT_I4;
      V_I4(&target) = value.to_int32();
      return;
    case Value::Kind::R8:
      V_VT(&target) = VT_R8;
      V_R8(&target) = value.to_double();
      return;
    case Value::Kind::Text:
      V_BSTR(&target) = Bstr(*value.text()).detach();
      V_VT(&target) = VT_BSTR;
      return;
    case Value::Kind::Object:
      V_DISPATCH(&target) = export_object(value.to_object()).detach();
      V_VT(&target) = VT_DISPATCH;
      return;
    case Value::Kind::Record:
      return record_to_variant(*value.to_record(), records, target);
    case Value::Kind::Array:
      return array_to_variant(value.to_array(), records, target);
  }
}

void write_through(const VARIANT& target, const Value& value, RecordTypes& records) {
  const VARTYPE type = V_VT(&target) & ~VT_BYREF;
  if (type == VT_RECORD) {
    return RecordLayout(ComPtr<IRecordInfo>::share(V_RECORDINFO(&target)))
        .write(*value.to_record(), V_RECORD(&target));
  }
  Variant content;
  to_variant(value, records, content.get());
  if (type == VT_VARIANT) {
    Variant before;
    before.get() = *V_VARIANTREF(&target);
    *V_VARIANTREF(&target) = content.detach();
    return;
  }
  if (V_VT(&content.get()) != type) content = changed(content.get(), type);
  Variant before;  // takes what the caller's place holds
  V_VT(&before.get()) = type;
  // All types that come by reference alone lie in the variant's first field.
  constexpr std::size_t sizes[] = {
      0, 0, 2, 4, 4, 8, 8, 8, sizeof(void*), sizeof(void*), 4, 2, 0, sizeof(void*), 0, 0,
      1, 1, 2, 4, 8, 8, 4, 4};
  const std::size_t size = type & VT_ARRAY ? sizeof(void*) : type < std::size(sizes) ? sizes[type] : 0;
  if (size == 0) throw Failure(Error::type_mismatch);
  std::memcpy(&V_NONE(&before.get()), V_BYREF(&target), size);
  std::memcpy(V_BYREF(&target), &V_NONE(&content.get()), size);
  V_VT(&content.get()) = VT_EMPTY;
}

}  // namespace platform::com
