#include "deskhost/system/pipe_end.h"

namespace deskhost {

// A named pipe that nobody serves can't be opened here, and nothing waits for it.
PipeEnd::PipeEnd(const std::filesystem::path& /*path*/) {}
PipeEnd::~PipeEnd() = default;

}  // namespace deskhost
