#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "platform/host_watch.h"
#include "platform/message_box.h"
#include "platform/message_line.h"
#include "platform/text.h"

namespace platform {
namespace {

MessageSink& sink() {
  static MessageSink shown;
  return shown;
}

std::vector<std::string_view> lines_of(std::string_view text) {
  std::vector<std::string_view> lines;
  for (;;) {
    const std::size_t end = text.find_first_of("\r\n");
    lines.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return lines;
    text.remove_prefix(end + (text.substr(end, 2) == "\r\n" ? 2 : 1));
  }
}

void show_framed(std::string_view text, std::string_view title) {
  const std::vector<std::string_view> lines = lines_of(text);
  std::size_t width = character_count(title) + 2;
  for (const std::string_view line : lines) width = std::max(width, character_count(line));
  std::string box = "+-" + std::string(title) + std::string(width - character_count(title), '-') + "-+\n";
  for (const std::string_view line : lines) {
    box += "| " + std::string(line) + std::string(width - character_count(line), ' ') + " |\n";
  }
  box += "+-" + std::string(width, '-') + "-+\nPress Enter: ";
  std::fputs(box.c_str(), stderr);
  for (int c = std::getchar(); c != '\n' && c != EOF; c = std::getchar()) {
  }
}

}  // namespace

void message_box(std::string_view text, std::string_view title, Icon icon) {
  // a copy: what is shown may set another sink
  if (const MessageSink shown = sink()) {
    return shown(text, title, icon);
  }
  if (const Watch* told = watch(); told && told->message_box) told->message_box();
  if (isatty(STDIN_FILENO) != 0) {
    show_framed(text, title);
  } else {
    std::fputs(message_line(text, title, icon).c_str(), stderr);
  }
}

void set_message_sink(MessageSink shown) {
  sink() = std::move(shown);
}

}  // namespace platform
