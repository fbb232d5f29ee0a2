#pragma once

#include <chrono>
#include <iosfwd>
#include <string>

#include "deskhost/session/gate.h"

namespace deskhost {

/// Shows on a terminal how far a long import is: a line that is written over, and erased at the end.
class Progress {
 public:
  explicit Progress(std::ostream& terminal) : terminal_(terminal) {}
  ~Progress() { erase(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// A host call; a written ToolID counts as a tool.
  void observe(CallKind kind, const automation::Object& target, automation::Member member);
  /// Takes the line away, before something else is written, and starts counting anew.
  void erase();

 private:
  using Clock = std::chrono::steady_clock;

  std::ostream& terminal_;
  long tools_ = 0;
  bool shown_ = false;
  Clock::time_point start_, last_shown_;
};

}  // namespace deskhost
