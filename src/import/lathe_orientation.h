#pragma once

#include <string>

#include "automation/value.h"

namespace mQuorvex {

/// What fields 15 and 84 say together: field 84 where field 15 is empty or exactly "0"; else field 15,
/// decoded where it is one of the position codes ("Z+", "3H", …).
automation::Value decode_lathe_orientation(const std::string& code, const std::string& otherwise);

}  // namespace mQuorvex
