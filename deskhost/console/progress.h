#pragma once

#include <chrono>
#include <cstddef>
#include <iosfwd>

namespace deskhost {

/// Shows on a terminal how far a long import is: a line that is written over, and erased at the end.
class Progress {
 public:
  explicit Progress(std::ostream& terminal) : terminal_(terminal) {}
  ~Progress() { erase(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// One more tool, of as many as the file has lines.
  void tool(std::size_t total);
  /// Takes the line away, before something else is written.
  void erase();
  /// Starts counting anew.
  void restart();

 private:
  using Clock = std::chrono::steady_clock;

  std::ostream& terminal_;
  std::size_t tools_ = 0;
  bool shown_ = false;
  Clock::time_point start_, last_shown_;
};

}  // namespace deskhost
