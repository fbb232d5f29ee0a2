#include "deskhost/console/reporter.h"
#include "deskhost/inspect/inspect.h"

namespace deskhost::inspect {

SubCommand sub_command() {
  return {"inspect",
          "[OPTION...] FILE [DOCUMENT]",
          "tell what an import would do; not on Windows",
          {},
          [](const std::vector<std::string>&, const Surroundings& surroundings) {
            Reporter(surroundings.err, surroundings.err_is_terminal)
                .tell(WrongUse("inspect: there is none on Windows",
                               "inspect the file on the system where deskhost is built"));
            constexpr int wrong_use = 2;
            return wrong_use;
          }};
}

}  // namespace deskhost::inspect
