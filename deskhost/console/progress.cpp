#include "deskhost/console/progress.h"

#include <ostream>

namespace deskhost {
namespace {

constexpr auto first_shown_after = std::chrono::seconds(1);
constexpr auto shown_every = std::chrono::milliseconds(200);
constexpr const char* erase_line = "\r\x1b[K";

}  // namespace

void Progress::tool(std::size_t total) {
  const auto now = Clock::now();
  if (tools_++ == 0) start_ = now;
  if (now - start_ < first_shown_after || now - last_shown_ < shown_every) return;
  const double seconds = std::chrono::duration<double>(now - start_).count();
  terminal_ << erase_line << tools_ << " of " << total << " tools, "
            << static_cast<long>(static_cast<double>(tools_) / seconds) << " per second" << std::flush;
  last_shown_ = now;
  shown_ = true;
}

void Progress::erase() {
  if (shown_) terminal_ << erase_line << std::flush;
  shown_ = false;
}

void Progress::restart() {
  erase();
  tools_ = 0;
}

}  // namespace deskhost
