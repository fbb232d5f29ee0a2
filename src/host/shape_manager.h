#pragma once

#include <array>

#include "host/application.h"

namespace host {

class ShapeCache : public Facade {
 public:
  using Facade::Facade;
  void Clear() const { call("Clear"); }
};

/// The host library's keeper of tool shapes.
class ShapeManager : public Facade {
 public:
  using Facade::Facade;
  /// A view of nothing detaches.
  void Attach(const Application& application) const { call("Attach", application.ref()); }
  void ExePath(std::string_view path) const { put("ExePath", path); }
  void UserModelsPath(std::string_view path) const { put("UserModelsPath", path); }
  /// red + 256 * green + 65536 * blue
  void ShapeColor(std::int32_t color) const { put("ShapeColor", color); }
  void ShapeMode(std::int32_t mode) const { put("ShapeMode", mode); }
  void ShapeFlag(bool flag) const { put("ShapeFlag", flag); }
  /// `tool` becomes the reference that the manager hands back.
  void RefreshToolShape(Tool& tool) const {
    if (is_nothing()) throw automation::Failure(automation::Error::object_not_set);
    std::array<automation::Value, 2> args{automation::Value(tool.ref()), automation::Value(0)};
    ref()->call("RefreshToolShape", args);
    tool = Tool(args[0].to_object());
  }
  /// Gives the number of tools.
  [[nodiscard]] std::int32_t RefreshToolShapes(const Tools& tools) const {
    return call("RefreshToolShapes", tools.ref(), 0).to_int32();
  }
  void RestoreToolShapes(const Tools& tools) const { call("RestoreToolShapes", tools.ref(), 0); }
  [[nodiscard]] host::ShapeCache ShapeCache() const { return child<host::ShapeCache>("ShapeCache"); }
};

}  // namespace host
