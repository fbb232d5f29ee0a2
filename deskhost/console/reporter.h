#pragma once

#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "deskhost/session/session.h"

namespace deskhost {

/// Tells on standard error what happened on the way, a line each: `KIND: TEXT`. On a terminal the kind has a
/// colour, unless NO_COLOR is set.
class Reporter {
 public:
  Reporter(std::ostream& err, bool is_terminal);

  void tell(std::string_view kind, const std::string& text);
  /// What was wrong, and the hint.
  void tell(const WrongUse& wrong);

  /// All that was told, for a program.
  [[nodiscard]] const nlohmann::ordered_json& told() const noexcept { return told_; }

 private:
  std::ostream& err_;
  bool in_colour_;
  nlohmann::ordered_json told_ = nlohmann::ordered_json::array();
};

}  // namespace deskhost
