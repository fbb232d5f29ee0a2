#include <windows.h>

#include <utility>

#include "platform/message_box.h"
#include "platform/win32/text_win32.h"

namespace platform {
namespace {

MessageSink& sink() {
  static MessageSink shown;
  return shown;
}

UINT style_of(Icon icon) {
  switch (icon) {
    case Icon::information:
      return MB_ICONINFORMATION;
    case Icon::exclamation:
      return MB_ICONEXCLAMATION;
    default:
      return 0;
  }
}

}  // namespace

void message_box(std::string_view text, std::string_view title, Icon icon) {
  // a copy: what is shown may set another sink
  if (const MessageSink shown = sink()) {
    shown(text, title, icon);
    return;
  }
  // the host's window waits for the box, as it does for one of its own
  MessageBoxW(GetActiveWindow(), win32::wide(text).c_str(), win32::wide(title).c_str(),
              MB_OK | style_of(icon));
}

void set_message_sink(MessageSink shown) {
  sink() = std::move(shown);
}

}  // namespace platform
