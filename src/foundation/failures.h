#pragma once

#include <utility>

#include "automation/failure.h"

/// Runs one statement of a zone in which failures are skipped: if it fails, nothing is said and the next one
/// runs. Programming errors aren't failures and go through.
template <class Statement>
void skip_failure(Statement&& statement) {
  try {
    std::forward<Statement>(statement)();
  } catch (const automation::Failure&) {
    // skipped, as the zone has it
  }
}

/// The zones as arguments, for what is looked up in more than one of them: both run one statement.
inline constexpr auto skipped = [](auto&& statement) { skip_failure(statement); };
inline constexpr auto handed_on = [](auto&& statement) { statement(); };

/// The test of a condition in such a zone: a test that fails counts as passed, so what it guards runs.
template <class Test>
[[nodiscard]] bool passes(Test&& test) {
  try {
    return std::forward<Test>(test)();
  } catch (const automation::Failure&) {
    return true;
  }
}
