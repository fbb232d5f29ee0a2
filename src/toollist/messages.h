#pragma once

#include <string>
#include <string_view>

#include "toollist/skipping.h"

namespace mQuorvexList {

/// A message's text in the user's language. Under skipping it is looked up even where the host doesn't tell
/// the language, so the user sees at least the default.
std::string message_text(const Skipping& skipping, std::string_view key, std::string_view default_text);

}  // namespace mQuorvexList
