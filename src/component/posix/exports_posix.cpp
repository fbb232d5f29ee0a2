// What a host finds in the component's file. These four forward to the component and throw nothing.

#include <string_view>

#include "component/connect_object.h"
#include "platform/component_abi.h"

#define QV_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

class ConnectFactory : public platform::ClassFactory {
 public:
  automation::Ref create() override { return component::make_connect_object(); }
  void release() override {}  // one for all, as long as the component is loaded
};

ConnectFactory factory_of_connect;

}  // namespace

QV_EXPORT std::int32_t DllGetClassObject(const char* class_name, const char* interface_name, void** factory) {
  if (factory == nullptr || class_name == nullptr || interface_name == nullptr)
    return platform::code::unexpected;
  *factory = nullptr;
  if (std::string_view(class_name) != component::connect_class) return platform::code::class_not_available;
  if (std::string_view(interface_name) != platform::class_factory_interface)
    return platform::code::no_interface;
  *factory = static_cast<platform::ClassFactory*>(&factory_of_connect);
  return platform::code::success;
}

QV_EXPORT std::int32_t DllCanUnloadNow() {
  return component::objects_alive() == 0 ? platform::code::success : platform::code::no;
}

// A host on this system finds the component by its file; there is nothing to enter anywhere.
QV_EXPORT std::int32_t DllRegisterServer() {
  return platform::code::success;
}
QV_EXPORT std::int32_t DllUnregisterServer() {
  return platform::code::success;
}
