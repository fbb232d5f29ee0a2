#include "platform/com/own_types.h"

#include "platform/com/class_info.h"
#include "platform/com/module.h"

namespace platform::com {
namespace {

/// The type library that is built into this module as its resource 1; null where there is none.
const ComPtr<ITypeLib>& own_library() {
  static const ComPtr<ITypeLib> library = [] {
    ComPtr<ITypeLib> loaded;
    if (FAILED(LoadTypeLibEx(own_module_file().c_str(), REGKIND_NONE, loaded.out()))) loaded.detach();
    return loaded;
  }();
  return library;
}

ComPtr<ITypeInfo> type_named(const std::string& name) {
  const ComPtr<ITypeLib>& library = own_library();
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
  if (own_library()) own_library()->GetTypeInfo(0, type.out());
  return type;
}

}  // namespace

OwnType::OwnType(const std::string& name)
    : info(type_named(name)), class_info(type_named(name + "Class")), records(some_type()) {
  if (class_info) source = default_source(class_info.get());
}

OwnType& own_type(const std::string& name) {
  static std::map<std::string, OwnType> types;
  return types.try_emplace(name, name).first->second;
}

}  // namespace platform::com
