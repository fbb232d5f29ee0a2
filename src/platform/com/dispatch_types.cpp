#include "platform/com/dispatch_types.h"

#include <cstring>

#include "platform/com/event_source.h"

namespace platform::com {

using automation::Error;
using automation::Failure;

bool DispatchTypes::Less::operator()(const GUID& a, const GUID& b) const noexcept {
  return std::memcmp(&a, &b, sizeof(GUID)) < 0;
}

DISPID DispatchType::id(IDispatch* object, automation::Member member) {
  if (member == automation::Member("_NewEnum")) return DISPID_NEWENUM;
  const auto [place, is_new] = ids.try_emplace(member.id(), DISPID_UNKNOWN);
  if (is_new) {
    std::wstring name = win32::wide(member.name());
    wchar_t* text = name.data();
    if (FAILED(object->GetIDsOfNames(IID_NULL, &text, 1, neutral, &place->second)))
      place->second = DISPID_UNKNOWN;
  }
  if (place->second == DISPID_UNKNOWN) throw Failure(Error::no_such_member);
  return place->second;
}

std::shared_ptr<DispatchTypes> DispatchTypes::shared() {
  static std::weak_ptr<DispatchTypes> present;
  auto types = present.lock();
  if (!types) present = types = std::make_shared<DispatchTypes>();
  return types;
}

std::shared_ptr<DispatchType> DispatchTypes::of(IDispatch* object) {
  ComPtr<ITypeInfo> info;
  if (FAILED(object->GetTypeInfo(0, neutral, info.out())) || !info) {
    return std::make_shared<DispatchType>(ComPtr<ITypeInfo>());
  }
  // The type keeps its interface, so the address can't have passed to another one.
  if (const auto known = by_info_.find(info.get()); known != by_info_.end()) return known->second;
  const GUID guid = guid_of(info.get());
  if (guid == GUID_NULL) return std::make_shared<DispatchType>(info);
  auto& type = by_guid_[guid];
  if (!type) {
    type = std::make_shared<DispatchType>(info);
    by_info_.emplace(info.get(), type);
  }
  return type;
}

}  // namespace platform::com
