#include <utility>

#include "platform/host_watch.h"

namespace platform {
namespace {

std::optional<Watch>& own_watch() {
  static std::optional<Watch> set;
  return set;
}

}  // namespace

void set_watch(std::optional<Watch> watch) {
  own_watch() = std::move(watch);
}

const Watch* watch() {
  return own_watch() ? &*own_watch() : nullptr;
}

}  // namespace platform
