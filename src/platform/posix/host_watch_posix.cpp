#include <dlfcn.h>

#include <utility>

#include "platform/host_watch.h"

namespace platform {
namespace {

std::optional<Watch>& own_watch() {
  static std::optional<Watch> set;
  return set;
}

}  // namespace
}  // namespace platform

extern "C" {

/// How a component reaches the watch of the program: the program exports this function, a component keeps its
/// own copy to itself.
__attribute__((visibility("default"))) const platform::Watch* QvHostWatch() {
  const auto& set = platform::own_watch();
  return set ? &*set : nullptr;
}
}

namespace platform {

void set_watch(std::optional<Watch> watch) {
  own_watch() = std::move(watch);
}

const Watch* watch() {
  if (const Watch* own = QvHostWatch()) return own;
  using Ask = const Watch*();
  static Ask* const programs = reinterpret_cast<Ask*>(dlsym(RTLD_DEFAULT, "QvHostWatch"));
  return programs != nullptr ? programs() : nullptr;
}

}  // namespace platform
