#include "deskhost/system/message_watch_win32.h"

#include <windows.h>

#include <cstdio>
#include <string>

#include "deskhost/system/file_path.h"
#include "platform/host_watch.h"
#include "platform/message_line.h"

namespace deskhost {
namespace {

using platform::Icon;

/// What a box shows, read off it.
struct Shown {
  std::string text;
  Icon icon = Icon::none;
};

std::string text_of(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return name_of(text);
}

std::wstring class_of(HWND window) {
  constexpr int room = 64;
  wchar_t name[room] = {};
  return {name, static_cast<std::size_t>(GetClassNameW(window, name, room))};
}

Icon icon_of(HWND picture) {
  const auto shown = reinterpret_cast<HICON>(SendMessageW(picture, STM_GETICON, 0, 0));
  if (shown == nullptr) return Icon::none;
  if (shown == LoadIconA(nullptr, IDI_INFORMATION)) return Icon::information;
  return shown == LoadIconA(nullptr, IDI_EXCLAMATION) ? Icon::exclamation : Icon::none;
}

/// Of the two static controls of a box one is the icon, the other the text.
BOOL CALLBACK read_control(HWND control, LPARAM result) {
  Shown& shown = *reinterpret_cast<Shown*>(result);  // NOLINT(performance-no-int-to-ptr): the system's way
  if (class_of(control) != L"Static") return TRUE;
  const LONG_PTR kind = GetWindowLongPtrW(control, GWL_STYLE) & SS_TYPEMASK;
  if (kind == SS_ICON) {
    shown.icon = icon_of(control);
  } else {
    shown.text = text_of(control);
  }
  return TRUE;
}

void close_and_report(HWND box) {
  Shown shown;
  EnumChildWindows(box, read_control, reinterpret_cast<LPARAM>(&shown));
  if (const platform::Watch* told = platform::watch(); told && told->message_box) told->message_box();
  std::fputs(platform::message_line(shown.text, text_of(box), shown.icon).c_str(), stderr);
  PostMessageW(box, WM_COMMAND, IDOK, 0);
}

/// The system calls this before a window of the thread becomes the active one; a box is complete by then.
LRESULT CALLBACK before_activation(int code, WPARAM window, LPARAM details) {
  static HWND reported = nullptr;
  const auto box = reinterpret_cast<HWND>(window);  // NOLINT(performance-no-int-to-ptr): the system's way
  if (code == HCBT_ACTIVATE && box != reported && class_of(box) == L"#32770") {
    reported = box;
    close_and_report(box);
  }
  if (code == HCBT_DESTROYWND && box == reported) reported = nullptr;
  return CallNextHookEx(nullptr, code, window, details);
}

}  // namespace

void close_and_report_messages() {
  SetWindowsHookExW(WH_CBT, before_activation, nullptr, GetCurrentThreadId());
}

}  // namespace deskhost
