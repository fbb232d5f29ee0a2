#include "platform/com/class_info.h"

#include <algorithm>

namespace platform::com {
namespace {

/// A type's attributes for as long as this lives; null where it doesn't give them.
class Attributes {
 public:
  explicit Attributes(ITypeInfo* info) noexcept : info_(info) {
    if (FAILED(info_->GetTypeAttr(&attributes_))) attributes_ = nullptr;
  }
  ~Attributes() {
    if (attributes_) info_->ReleaseTypeAttr(attributes_);
  }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;

  explicit operator bool() const noexcept { return attributes_ != nullptr; }
  const TYPEATTR* operator->() const noexcept { return attributes_; }

 private:
  ITypeInfo* info_;
  TYPEATTR* attributes_ = nullptr;
};

UINT implemented_by(ITypeInfo* class_info) noexcept {
  const Attributes attributes(class_info);
  return attributes ? attributes->cImplTypes : 0;
}

/// What a class has at a place; null for a place that it doesn't tell.
ComPtr<ITypeInfo> implemented(ITypeInfo* class_info, UINT place) {
  HREFTYPE reference = 0;
  ComPtr<ITypeInfo> type;
  if (FAILED(class_info->GetRefTypeOfImplType(place, &reference)) ||
      FAILED(class_info->GetRefTypeInfo(reference, type.out()))) {
    return {};
  }
  return type;
}

/// The dispatch interfaces that a class offers, apart from those that it calls.
std::vector<IID> offered_by(ITypeInfo* class_info) {
  std::vector<IID> faces;
  for (UINT place = 0; place < implemented_by(class_info); ++place) {
    INT flags = 0;
    if (FAILED(class_info->GetImplTypeFlags(place, &flags)) || (flags & IMPLTYPEFLAG_FSOURCE)) continue;
    const ComPtr<ITypeInfo> type = implemented(class_info, place);
    if (!type) continue;
    const Attributes attributes(type.get());
    if (attributes &&
        (attributes->typekind == TKIND_DISPATCH || (attributes->wTypeFlags & TYPEFLAG_FDISPATCHABLE)))
      faces.push_back(attributes->guid);
  }
  return faces;
}

/// The same for all classes of a type's library that offer this type.
std::vector<IID> offered_beside(ITypeInfo* type, const IID& own) {
  ComPtr<ITypeLib> library;
  UINT index = 0;
  std::vector<IID> faces;
  if (FAILED(type->GetContainingTypeLib(library.out(), &index))) return faces;
  for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
    TYPEKIND kind{};
    ComPtr<ITypeInfo> class_info;
    if (FAILED(library->GetTypeInfoType(i, &kind)) || kind != TKIND_COCLASS ||
        FAILED(library->GetTypeInfo(i, class_info.out()))) {
      continue;
    }
    const std::vector<IID> offered = offered_by(class_info.get());
    if (std::ranges::find(offered, own) != offered.end())
      faces.insert(faces.end(), offered.begin(), offered.end());
  }
  return faces;
}

}  // namespace

GUID guid_of(ITypeInfo* info) noexcept {
  const Attributes attributes(info);
  return attributes ? attributes->guid : GUID_NULL;
}

UINT functions_of(ITypeInfo* info) noexcept {
  const Attributes attributes(info);
  return attributes ? attributes->cFuncs : 0;
}

UINT variables_of(ITypeInfo* info) noexcept {
  const Attributes attributes(info);
  return attributes ? attributes->cVars : 0;
}

ComPtr<ITypeInfo> default_source(ITypeInfo* class_info) {
  constexpr INT wanted = IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE;
  for (UINT place = 0; place < implemented_by(class_info); ++place) {
    INT flags = 0;
    if (SUCCEEDED(class_info->GetImplTypeFlags(place, &flags)) && (flags & wanted) == wanted)
      return implemented(class_info, place);
  }
  return {};
}

ComPtr<ITypeInfo> told_class_of(IDispatch* object) {
  ComPtr<ITypeInfo> class_info;
  const auto provider = ComPtr<IDispatch>::share(object).as<IProvideClassInfo>();
  if (!provider || FAILED(provider->GetClassInfo(class_info.out()))) return {};
  return class_info;
}

std::vector<IID> other_faces_of(IDispatch* object, ITypeInfo* type) {
  std::vector<IID> faces;
  const IID own = type ? guid_of(type) : IID_NULL;
  if (const ComPtr<ITypeInfo> told = told_class_of(object)) {
    faces = offered_by(told.get());
  } else if (type != nullptr) {
    faces = offered_beside(type, own);
  }
  std::erase(faces, own);
  return faces;
}

}  // namespace platform::com
