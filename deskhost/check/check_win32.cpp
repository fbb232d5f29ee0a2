#include "deskhost/check/check.h"
#include "deskhost/console/reporter.h"

namespace deskhost::check {

SubCommand sub_command() {
  return {"check",
          "[OPTION...]",
          "try to break the component; not on Windows",
          {},
          [](const std::vector<std::string>&, const Surroundings& surroundings) {
            Reporter(surroundings.err, surroundings.err_is_terminal)
                .tell(WrongUse("check: there is none on Windows",
                               "check the component on the system where it is built"));
            constexpr int wrong_use = 2;
            return wrong_use;
          }};
}

}  // namespace deskhost::check
