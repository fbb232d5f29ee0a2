#include "platform/component_abi.h"
#include "platform/component_runtime.h"

// A component whose one class is made of what the program offers under the same name.
namespace {

std::string wanted;

class Factory : public platform::ClassFactory {
 public:
  automation::Ref create() override { return platform::create_object(wanted); }
  void release() override {}
};

}  // namespace

extern "C" {
__attribute__((visibility("default"))) std::int32_t DllGetClassObject(const char* class_name, const char*,
                                                                      void** factory) {
  static Factory own;
  wanted = class_name;
  *factory = nullptr;
  if (wanted == "Sample.Refused") return platform::code::class_not_available;
  *factory = static_cast<platform::ClassFactory*>(&own);
  return platform::code::success;
}
#ifndef SAMPLE_WITHOUT_UNLOAD
__attribute__((visibility("default"))) std::int32_t DllCanUnloadNow() {
  return platform::code::success;
}
#endif
}
