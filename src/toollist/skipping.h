#pragma once

#include <utility>

#include "foundation/failures.h"

namespace mQuorvexList {

/// Whether a procedure skips its failing statements at this moment. It starts by handing failures on; what
/// begins and ends the skipping is said where it happens.
class Skipping {
 public:
  void begin() noexcept { on_ = true; }
  void end() noexcept { on_ = false; }

  /// Runs one statement: a failure is skipped, or handed on while the skipping is off.
  template <class Statement>
  void statement(Statement&& statement) const {
    if (on_) {
      skip_failure(std::forward<Statement>(statement));
    } else {
      std::forward<Statement>(statement)();
    }
  }

  /// The test of a condition: one that fails counts as passed, or is handed on while the skipping is off.
  template <class Test>
  [[nodiscard]] bool test(Test&& test) const {
    return on_ ? passes(std::forward<Test>(test)) : std::forward<Test>(test)();
  }

 private:
  bool on_ = false;
};

}  // namespace mQuorvexList
