#include "platform/com/record.h"

#include <algorithm>

#include "platform/com/result.h"

namespace platform::com {

using automation::Array;
using automation::Error;
using automation::Failure;
using automation::Record;
using automation::Value;

RecordLayout::RecordLayout(ComPtr<IRecordInfo> info) : info_(std::move(info)) {
  ComPtr<ITypeInfo> type;
  Bstr name;
  ULONG size = 0;
  if (!info_ || FAILED(info_->GetTypeInfo(type.out()))) throw Failure(Error::type_mismatch);
  check(info_->GetName(name.out()));
  check(info_->GetSize(&size));
  name_ = name.utf8();
  size_ = size;
  VARDESC* member = nullptr;
  for (UINT i = 0; SUCCEEDED(type->GetVarDesc(i, &member)); ++i) {
    Field field{"", member->elemdescVar.tdesc.vt, member->oInst};
    UINT count = 0;
    const HRESULT named = type->GetNames(member->memid, name.out(), 1, &count);
    type->ReleaseVarDesc(member);
    check(named);
    field.name = name.utf8();
    fields_.push_back(std::move(field));
  }
}

VARIANT RecordLayout::place(const Field& field, void* memory) {
  VARIANT reference;
  VariantInit(&reference);
  V_VT(&reference) = static_cast<VARTYPE>(VT_BYREF | field.type);
  V_BYREF(&reference) = static_cast<char*>(memory) + field.offset;
  return reference;
}

const RecordLayout::Field& RecordLayout::field(const std::string& name) const {
  const auto found = std::ranges::find(fields_, name, &Field::name);
  if (found == fields_.end()) throw Failure(Error::no_such_member);
  return *found;
}

std::shared_ptr<Record> RecordLayout::read(void* memory) const {
  auto record = std::make_shared<Record>();
  record->type = name_;
  for (const Field& one : fields_) record->members.emplace_back(one.name, to_value(place(one, memory)));
  return record;
}

void RecordLayout::read(void* memory, Record& record) const {
  for (auto& [name, value] : record.members) value = to_value(place(field(name), memory));
}

void RecordLayout::write(const Record& record, void* memory) const {
  RecordTypes none{{}};
  for (const auto& [name, value] : record.members) write_through(place(field(name), memory), value, none);
}

const RecordLayout& RecordTypes::find(const std::string& name) {
  std::shared_ptr<const RecordLayout>& layout = found_[name];
  if (layout) return *layout;
  ComPtr<ITypeLib> library;
  ComPtr<ITypeInfo> type;
  ComPtr<IRecordInfo> info;
  UINT place = 0;
  MEMBERID member = 0;
  USHORT count = 1;
  std::wstring wanted = win32::wide(name);
  if (!type_ || FAILED(type_->GetContainingTypeLib(library.out(), &place)) ||
      FAILED(library->FindName(wanted.data(), 0, type.out(), &member, &count)) || count == 0 ||
      FAILED(GetRecordInfoFromTypeInfo(type.get(), info.out()))) {
    throw Failure(Error::type_mismatch);
  }
  layout = std::make_shared<const RecordLayout>(std::move(info));
  return *layout;
}

void record_to_variant(const Record& record, RecordTypes& records, VARIANT& target) {
  const RecordLayout& layout = records.find(record.type);
  Variant made;
  V_RECORD(&made.get()) = layout.info()->RecordCreate();
  if (V_RECORD(&made.get()) == nullptr) throw std::bad_alloc();
  V_RECORDINFO(&made.get()) = ComPtr<IRecordInfo>::share(layout.info()).detach();
  V_VT(&made.get()) = VT_RECORD;
  layout.write(record, V_RECORD(&made.get()));
  target = made.detach();
}

Value record_to_value(IRecordInfo* info, void* memory) {
  if (info == nullptr || memory == nullptr) throw Failure(Error::type_mismatch);
  return RecordLayout(ComPtr<IRecordInfo>::share(info)).read(memory);
}

void records_to_variant(const Array& values, RecordTypes& records, VARIANT& target) {
  const RecordLayout& layout = records.find(values.front().to_record()->type);
  SAFEARRAYBOUND bound{static_cast<ULONG>(values.size()), 0};
  SafeArray array(SafeArrayCreateEx(VT_RECORD, 1, &bound, layout.info()));
  {
    const ArrayAccess access(array.get());
    auto* memory = static_cast<char*>(access.data());
    if (memory == nullptr) throw std::bad_alloc();
    for (const Value& value : values) {
      layout.write(*value.to_record(), memory);
      memory += layout.size();
    }
  }
  V_VT(&target) = VT_ARRAY | VT_RECORD;
  V_ARRAY(&target) = array.detach();
}

Value records_to_value(SAFEARRAY* array, std::size_t count) {
  ComPtr<IRecordInfo> info;
  check(SafeArrayGetRecordInfo(array, info.out()));
  const RecordLayout layout(std::move(info));
  const ArrayAccess access(array);
  auto* memory = static_cast<char*>(access.data());
  if (memory == nullptr && count > 0) throw Failure(Error::type_mismatch);
  Array values;
  values.reserve(count);
  for (std::size_t i = 0; i < count; ++i) values.emplace_back(layout.read(memory + i * layout.size()));
  return values;
}

}  // namespace platform::com
