#include "platform/host_watch.h"

namespace platform {

const Watch* watch() {
  return own_watch();
}

}  // namespace platform
