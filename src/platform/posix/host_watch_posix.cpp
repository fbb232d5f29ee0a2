#include <dlfcn.h>

#include "platform/host_watch.h"

extern "C" {

/// How a component reaches the watch of the program: the program exports this function, a component keeps its
/// own copy to itself.
__attribute__((visibility("default"))) const platform::Watch* QvHostWatch() {
  return platform::own_watch();
}
}

namespace platform {

const Watch* watch() {
  if (const Watch* own = own_watch()) return own;
  using Ask = const Watch*();
  static Ask* const programs = reinterpret_cast<Ask*>(dlsym(RTLD_DEFAULT, "QvHostWatch"));
  return programs != nullptr ? programs() : nullptr;
}

}  // namespace platform
