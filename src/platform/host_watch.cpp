#include "platform/host_watch.h"

#include <utility>

namespace platform {
namespace {

std::optional<Watch>& set_here() {
  static std::optional<Watch> set;
  return set;
}

}  // namespace

void set_watch(std::optional<Watch> watch) {
  set_here() = std::move(watch);
}

const Watch* own_watch() {
  return set_here() ? &*set_here() : nullptr;
}

}  // namespace platform
