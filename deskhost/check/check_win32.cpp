#include <ostream>

#include "deskhost/check/check.h"

namespace deskhost {

int check::run_check(const std::vector<std::string>& /*args*/, const Surroundings& surroundings) {
  surroundings.err << "deskhost: check: there is none on Windows\n"
                      "hint: check the component on the system where it is built\n";
  constexpr int wrong_use = 2;
  return wrong_use;
}

}  // namespace deskhost
