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

/// Where an object has a member.
struct MemberPlace {
  /// The dispatch interface that knows it; IID_NULL for the one by which the object was given.
  IID face = IID_NULL;
  /// DISPID_UNKNOWN for a member that isn't there.
  DISPID id = DISPID_UNKNOWN;
};
using MemberPlaces = std::unordered_map<std::uint64_t, MemberPlace>;  // by the member's id

/// What is known of a host's type: the places of its members and the records of its library.
class DispatchType {
 public:
  explicit DispatchType(ComPtr<ITypeInfo> type);

  /// Whether what an object answered for a name is what every object of the type answers. It isn't where the
  /// type is one for objects of any kind, or doesn't list what the object has.
  [[nodiscard]] bool is_shared(const std::wstring& name, DISPID answer) const;

  ComPtr<ITypeInfo> info;
  RecordTypes records;
  MemberPlaces places;  // the shared ones

 private:
  bool is_own_ = false, lists_members_ = false;
};

/// The types that the host's objects turned out to have. They are known for as long as anybody holds this, so
/// that no reference to the host's type information outlives the last object.
class DispatchTypes {
 public:
  /// The one that the thread's objects of this moment hold; a new one where there are none.
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
