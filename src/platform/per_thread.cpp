#include "platform/per_thread.h"

namespace platform {

const void* this_thread() noexcept {
  static thread_local char here;
  return &here;
}

}  // namespace platform
