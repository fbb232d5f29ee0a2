#include "deskhost/console/reporter.h"

#include <algorithm>
#include <array>
#include <ostream>

#include "deskhost/system/program.h"

namespace deskhost {
namespace {

struct KindColour {
  std::string_view kind;
  const char* escape;
};
constexpr const char* plain = "\x1b[0m";
constexpr std::array<KindColour, 5> colours{{{"deskhost", "\x1b[1;31m"},
                                             {"failure", "\x1b[1;31m"},
                                             {"seen", "\x1b[1;33m"},
                                             {"warning", "\x1b[1;33m"},
                                             {"note", "\x1b[36m"}}};

}  // namespace

Reporter::Reporter(std::ostream& err, bool is_terminal)
    : err_(err), in_colour_(is_terminal && variable("NO_COLOR").value_or("").empty()) {}

void Reporter::tell(std::string_view kind, const std::string& text) {
  told_.push_back({{"kind", kind}, {"text", text}});
  const auto colour = std::ranges::find(colours, kind, &KindColour::kind);
  if (in_colour_ && colour != colours.end()) {
    err_ << colour->escape << kind << ':' << plain << ' ' << text << std::endl;
  } else {
    err_ << kind << ": " << text << std::endl;
  }
}

void Reporter::tell(const WrongUse& wrong) {
  tell("deskhost", wrong.what());
  tell("hint", wrong.hint);
}

}  // namespace deskhost
