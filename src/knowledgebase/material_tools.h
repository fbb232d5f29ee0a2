#pragma once

#include <optional>
#include <string>

#include "foundation/kept_walk.h"
#include "host/tool.h"

namespace KBM {

/// Gives tools the identifier of their cutter material. A tool's material is named by its ToolID: the second
/// piece where "#" splits it in exactly two.
class MaterialTools {
 public:
  /// Sets and marks `ToolMaterial` of each tool of that material, in the document's order, on a walk over its
  /// tools; see KeptWalk for what is kept between the lines. Throws Failure at the tool that fails; the tools
  /// in front of it are written.
  void assign(const std::string& material_name, const std::string& material_id);

 private:
  std::optional<KeptWalk<host::Tool, std::string>> tools_;  // by the ToolID's end, see below
};

}  // namespace KBM
