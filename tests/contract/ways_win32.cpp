#include "contract/sample.h"
#include "platform/com/bridge.h"

namespace contract {

std::vector<Way> system_ways() {
  return {{"BothBridges", [](const automation::Ref& object) {
             return platform::com::make_com_object(platform::com::make_dispatch(object).get());
           }}};
}

}  // namespace contract
