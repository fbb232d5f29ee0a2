#pragma once

#include <string>

namespace KBM {

/// The knowledge base's identifier of a cutting material. Until materials come from the knowledge base, the
/// material's name stands in for it.
std::string GetCutterMaterialId(const std::string& name);

}  // namespace KBM
