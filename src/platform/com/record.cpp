#include "platform/com/record.h"

#include <array>

#include "platform/com/result.h"

namespace platform::com {

using automation::Array;
using automation::Error;
using automation::Failure;
using automation::Record;
using automation::Value;

namespace {

/// The names of a record's members, in order.
std::vector<Bstr> names_of(IRecordInfo* info) {
  ULONG count = 0;
  check(info->GetFieldNames(&count, nullptr));
  std::vector<BSTR> given(count);
  check(info->GetFieldNames(&count, given.data()));
  std::vector<Bstr> names(count);
  for (ULONG i = 0; i < count; ++i) *names[i].out() = given[i];
  return names;
}

Value field(IRecordInfo* info, void* memory, const Bstr& name) {
  Variant value;
  check(info->GetField(memory, name.get(), value.out()));
  return to_value(value.get());
}

std::size_t size_of(IRecordInfo* info) {
  ULONG size = 0;
  check(info->GetSize(&size));
  return size;
}

}  // namespace

const ComPtr<IRecordInfo>& RecordTypes::find(const std::string& name) {
  ComPtr<IRecordInfo>& record = found_[name];
  if (record) return record;
  ComPtr<ITypeLib> library;
  UINT place = 0;
  if (!type_ || FAILED(type_->GetContainingTypeLib(library.out(), &place)))
    throw Failure(Error::type_mismatch);
  ComPtr<ITypeInfo> type;
  MEMBERID member = 0;
  USHORT count = 1;
  std::wstring wanted = win32::wide(name);
  check(library->FindName(wanted.data(), 0, type.out(), &member, &count));
  if (count == 0 || FAILED(GetRecordInfoFromTypeInfo(type.get(), record.out())))
    throw Failure(Error::type_mismatch);
  return record;
}

Value record_to_value(IRecordInfo* info, void* memory) {
  if (info == nullptr || memory == nullptr) throw Failure(Error::type_mismatch);
  auto record = std::make_shared<Record>();
  Bstr type;
  check(info->GetName(type.out()));
  record->type = type.utf8();
  for (const Bstr& name : names_of(info))
    record->members.emplace_back(name.utf8(), field(info, memory, name));
  return record;
}

void read_record(IRecordInfo* info, void* memory, Record& record) {
  for (auto& [name, value] : record.members) value = field(info, memory, Bstr(name));
}

void write_record(const Record& record, IRecordInfo* info, void* memory) {
  RecordTypes none{{}};
  for (const auto& [name, value] : record.members) {
    Variant content;
    to_variant(value, none, content.get());
    check(info->PutField(INVOKE_PROPERTYPUT, memory, Bstr(name).get(), &content.get()));
  }
}

void record_to_variant(const Record& record, RecordTypes& records, VARIANT& target) {
  const ComPtr<IRecordInfo>& info = records.find(record.type);
  Variant made;
  V_RECORD(&made.get()) = info->RecordCreate();
  if (V_RECORD(&made.get()) == nullptr) throw std::bad_alloc();
  V_RECORDINFO(&made.get()) = ComPtr(info).detach();
  V_VT(&made.get()) = VT_RECORD;
  write_record(record, info.get(), V_RECORD(&made.get()));
  target = made.detach();
}

void records_to_variant(const Array& values, RecordTypes& records, VARIANT& target) {
  const ComPtr<IRecordInfo>& info = records.find(values.front().to_record()->type);
  SAFEARRAYBOUND bound{static_cast<ULONG>(values.size()), 0};
  SafeArray array(SafeArrayCreateEx(VT_RECORD, 1, &bound, info.get()));
  {
    const ArrayAccess access(array.get());
    auto* memory = static_cast<char*>(access.data());
    if (memory == nullptr) throw std::bad_alloc();
    const std::size_t size = size_of(info.get());
    for (const Value& value : values) {
      write_record(*value.to_record(), info.get(), memory);
      memory += size;
    }
  }
  V_VT(&target) = VT_ARRAY | VT_RECORD;
  V_ARRAY(&target) = array.detach();
}

Value records_to_value(SAFEARRAY* array, std::size_t count) {
  ComPtr<IRecordInfo> info;
  check(SafeArrayGetRecordInfo(array, info.out()));
  const ArrayAccess access(array);
  auto* memory = static_cast<char*>(access.data());
  if (memory == nullptr && count > 0) throw Failure(Error::type_mismatch);
  const std::size_t size = size_of(info.get());
  Array values;
  values.reserve(count);
  for (std::size_t i = 0; i < count; ++i) values.push_back(record_to_value(info.get(), memory + i * size));
  return values;
}

}  // namespace platform::com
