#pragma once

#include <map>
#include <memory>
#include <unordered_map>
#include <vector>

#include "automation/member.h"
#include "platform/com/convert.h"

namespace platform::com {

/// The language that no text depends on.
inline constexpr LCID neutral = 0;

/// What is known of a host's type: the ids of its members and the records of its library.
struct DispatchType {
  explicit DispatchType(ComPtr<ITypeInfo> type) : info(std::move(type)), records(info) {}

  /// The id of a member; the host is asked the first time. Throws Failure(no_such_member).
  DISPID id(IDispatch* object, automation::Member member);

  ComPtr<ITypeInfo> info;
  RecordTypes records;
  std::unordered_map<std::uint64_t, DISPID> ids;
};

/// The types that the host's objects turned out to have. They are known for as long as anybody holds this, so
/// that no reference to the host's type information outlives the last object.
class DispatchTypes {
 public:
  /// The one that the objects of this moment hold; a new one where there are none.
  static std::shared_ptr<DispatchTypes> shared();

  /// The type of an object; one of its own where it has no type information.
  std::shared_ptr<DispatchType> of(IDispatch* object);

 private:
  struct Less {
    bool operator()(const GUID& a, const GUID& b) const noexcept;
  };
  std::map<GUID, std::shared_ptr<DispatchType>, Less> by_guid_;
  // Most hosts give the same interface for the same type each time.
  std::unordered_map<ITypeInfo*, std::shared_ptr<DispatchType>> by_info_;
};

}  // namespace platform::com
