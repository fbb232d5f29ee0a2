#pragma once

#include <list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "deskhost/system/leftover.h"
#include "deskhost/system/other_value.h"

namespace deskhost {

/// While this lives, an import reads copies of the user's files, in a folder of its own: this program takes
/// the place of the exporter there, since an import starts one and deletes the file that it finds before.
/// Without a knowledge-base file that one is empty.
class HandedOut {
 public:
  /// `tools` may be standard input. Throws WrongUse for a file that can't be read.
  HandedOut(const std::string& tools, const std::string& speeds);

 private:
  Leftover folder_;
  std::list<OtherValue> variables_;
};

/// The exit status of what this program does in the exporter's place; nothing where it wasn't started under
/// that name.
std::optional<int> hand_out(const std::string& own_name);

}  // namespace deskhost
