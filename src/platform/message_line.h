#pragma once

#include <string>
#include <string_view>

#include "platform/message_box.h"

namespace platform {

/// How a message reads where nobody is there to see a box: `message box: {"title":…,"text":…,"icon":…}` and a
/// line end.
std::string message_line(std::string_view text, std::string_view title, Icon icon);

}  // namespace platform
