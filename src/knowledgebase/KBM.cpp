#include "knowledgebase/KBM.h"

namespace KBM {

std::string GetCutterMaterialId(const std::string& name) {
  return name;
}

}  // namespace KBM
