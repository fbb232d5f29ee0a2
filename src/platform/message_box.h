#pragma once

#include <functional>
#include <string_view>

namespace platform {

enum class Icon { none, information, exclamation };

/// Shows a message with one OK button and returns when it is closed. On posix: at a terminal framed, waiting
/// for Enter; otherwise one line `message box: {"title":…,"text":…,"icon":…}` on standard error, closed with
/// OK.
void message_box(std::string_view text, std::string_view title, Icon icon = Icon::none);

/// Stands in for the user: every message goes to `shown` and counts as closed with OK. An empty function
/// gives the messages back to the screen.
using MessageSink = std::function<void(std::string_view text, std::string_view title, Icon icon)>;
void set_message_sink(MessageSink shown);

}  // namespace platform
