#include "platform/com/own_types.h"

#include "platform/com/class_info.h"
#include "platform/com/module.h"
#include "platform/per_thread.h"

namespace platform::com {
namespace {

struct OwnTypes {
  /// The type library that is built into this module as its resource 1; null where there is none.
  ComPtr<ITypeLib> library;
  std::map<std::string, OwnType> known;

  OwnTypes() {
    if (FAILED(LoadTypeLibEx(own_module_file().c_str(), REGKIND_NONE, library.out()))) library.detach();
  }
};

OwnTypes& own_types() {
  static PerThread<OwnTypes> types;
  return types.get();
}

ComPtr<ITypeInfo> type_named(const std::string& name) {
  const ComPtr<ITypeLib>& library = own_types().library;
  ComPtr<ITypeInfo> type;
  MEMBERID member = 0;
  USHORT count = 1;
  std::wstring wanted = win32::wide(name);
  if (!library || FAILED(library->FindName(wanted.data(), 0, type.out(), &member, &count)) || count == 0)
    return {};
  return member == MEMBERID_NIL ? type : ComPtr<ITypeInfo>();
}

/// Any type leads to the library's records.
ComPtr<ITypeInfo> some_type() {
  ComPtr<ITypeInfo> type;
  const ComPtr<ITypeLib>& library = own_types().library;
  if (library) library->GetTypeInfo(0, type.out());
  return type;
}

}  // namespace

OwnType::OwnType(const std::string& name)
    : info(type_named(name)), class_info(type_named(name + "Class")), records(some_type()) {
  if (class_info) source = default_source(class_info.get());
}

OwnType& own_type(const std::string& name) {
  return own_types().known.try_emplace(name, name).first->second;
}

}  // namespace platform::com
