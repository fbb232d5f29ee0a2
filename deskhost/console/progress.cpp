#include "deskhost/console/progress.h"

#include <ostream>

#include "deskhost/session/trace.h"

namespace deskhost {
namespace {

constexpr auto first_shown_after = std::chrono::seconds(1);
constexpr auto shown_every = std::chrono::milliseconds(200);
constexpr const char* erase_line = "\r\x1b[K";

}  // namespace

void Progress::observe(CallKind kind, const automation::Object& target, automation::Member member) {
  if (kind != CallKind::put || member != automation::Member("Value")) return;
  if (!trace_name_of(target).ends_with(".ToolID")) return;
  const auto now = Clock::now();
  if (tools_++ == 0) start_ = now;
  if (now - start_ < first_shown_after || now - last_shown_ < shown_every) return;
  const double seconds = std::chrono::duration<double>(now - start_).count();
  terminal_ << erase_line << tools_ << " tools, " << static_cast<long>(static_cast<double>(tools_) / seconds)
            << " per second" << std::flush;
  last_shown_ = now;
  shown_ = true;
}

void Progress::erase() {
  if (shown_) terminal_ << erase_line << std::flush;
  shown_ = false;
  tools_ = 0;
}

}  // namespace deskhost
