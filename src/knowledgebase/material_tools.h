#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "host/tool.h"

namespace KBM {

/// Gives tools the identifier of their cutter material. A tool's material is named by its ToolID: the second
/// piece where "#" splits it in exactly two.
class MaterialTools {
 public:
  /// Sets and marks `ToolMaterial` of each tool of that material, in the document's order. This stands for a
  /// walk over the document's tools at every line: the first call walks, writing as it goes, and remembers
  /// what it read, since nothing in the run changes a ToolID. Throws Failure at the tool that fails; the
  /// tools in front of it are written.
  void assign(const std::string& material_name, const std::string& material_id);

 private:
  void walk(const std::string& material_name, const std::string& material_id);

  bool walked_ = false;
  std::unordered_map<std::string, std::vector<host::ToolParameters>> by_material_;
};

}  // namespace KBM
