#pragma once

#include "automation/failure.h"

namespace testing_support {

/// Which failure a call ends with; none where it succeeds.
template <class Call>
automation::Error error_of(const Call& call) {
  try {
    call();
  } catch (const automation::Failure& failure) {
    return failure.error();
  }
  return automation::Error::none;
}

}  // namespace testing_support
