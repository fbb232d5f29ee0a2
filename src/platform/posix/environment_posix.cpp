#include <cstdlib>

#include "platform/environment.h"
#include "platform/text.h"

namespace platform {

std::string environment(std::string_view name) {
  const char* value = std::getenv(std::string(name).c_str());
  // the variable is UTF-8 here; what the code page lacks is lost on the way through it
  return value != nullptr ? from_code_page(to_code_page(value)) : std::string();
}

}  // namespace platform
