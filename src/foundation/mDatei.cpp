#include "foundation/mDatei.h"

namespace mDatei {

std::string RemoveExtension(const std::string& text) {
  return text.substr(0, text.rfind('.'));
}

}  // namespace mDatei
