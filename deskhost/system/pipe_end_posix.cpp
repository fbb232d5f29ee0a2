#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "deskhost/system/pipe_end.h"

namespace deskhost {

PipeEnd::PipeEnd(const std::filesystem::path& path) {
  std::error_code ignored;
  if (!std::filesystem::is_fifo(path, ignored)) return;
  descriptor_ = open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
  has_no_reader_ = descriptor_ < 0 && errno == ENXIO;
}

PipeEnd::~PipeEnd() {
  if (descriptor_ >= 0) close(descriptor_);
}

}  // namespace deskhost
