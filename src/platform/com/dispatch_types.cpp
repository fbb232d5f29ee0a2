#include "platform/com/dispatch_types.h"

#include <cstring>

#include "platform/com/class_info.h"
#include "platform/per_thread.h"

namespace platform::com {

bool DispatchTypes::Less::operator()(const GUID& a, const GUID& b) const noexcept {
  return std::memcmp(&a, &b, sizeof(GUID)) < 0;
}

DispatchType::DispatchType(ComPtr<ITypeInfo> type) : info(std::move(type)), records(info) {
  if (!info) return;
  const GUID guid = guid_of(info.get());
  is_own_ = guid != GUID_NULL && guid != IID_IDispatch && guid != IID_IUnknown;
  constexpr UINT of_dispatch = 7;
  const UINT functions = functions_of(info.get());
  lists_members_ = variables_of(info.get()) > 0 || (functions != 0 && functions != of_dispatch);
}

bool DispatchType::is_shared(const std::wstring& name, DISPID answer) const {
  if (!is_own_ || !lists_members_) return is_own_;
  std::wstring asked = name;
  wchar_t* text = asked.data();
  DISPID listed = DISPID_UNKNOWN;
  if (FAILED(info->GetIDsOfNames(&text, 1, &listed))) listed = DISPID_UNKNOWN;
  return listed == answer;
}

std::shared_ptr<DispatchTypes> DispatchTypes::shared() {
  static PerThread<std::weak_ptr<DispatchTypes>> of_threads;
  std::weak_ptr<DispatchTypes>& present = of_threads.get();
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
  if (guid == GUID_NULL) return std::make_shared<DispatchType>(std::move(info));
  auto& type = by_guid_[guid];
  if (!type) {
    type = std::make_shared<DispatchType>(info);
    by_info_.emplace(info.get(), type);
  }
  return type;
}

}  // namespace platform::com
