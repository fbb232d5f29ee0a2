#pragma once

#include "host/facade.h"

namespace host {

class Point : public Facade {
 public:
  using Facade::Facade;
  void SetXYZ(double x, double y, double z) const { call("SetXYZ", x, y, z); }
  [[nodiscard]] double X() const { return get("X").to_double(); }
  [[nodiscard]] double Y() const { return get("Y").to_double(); }
  [[nodiscard]] double Z() const { return get("Z").to_double(); }
};

class Vector : public Facade {
 public:
  using Facade::Facade;
  void SetXYZ(double x, double y, double z) const { call("SetXYZ", x, y, z); }
};

class SimTool : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] std::string Name() const { return get("Name").to_text(); }
};

class SimSolid : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] std::string Name() const { return get("Name").to_text(); }
  /// `angle` in radians, about the axis through `point` in the direction of `axis`.
  void Rotate(const Point& point, const Vector& axis, double angle) const {
    call("Rotate", point.ref(), axis.ref(), angle);
  }
};

class SimTurret : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] std::string Name() const { return get("Name").to_text(); }
  [[nodiscard]] Point Origin() const { return child<Point>("Origin"); }
};

class Scene : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] Collection<SimTool> SimTools() const { return child<Collection<SimTool>>("SimTools"); }
  [[nodiscard]] Collection<SimSolid> SimSolids() const { return child<Collection<SimSolid>>("SimSolids"); }
  [[nodiscard]] Collection<SimTurret> SimTurrets() const {
    return child<Collection<SimTurret>>("SimTurrets");
  }
};

/// The source of AfterBegin and OnSimulateTool.
class Simulation : public Facade {
 public:
  using Facade::Facade;
  [[nodiscard]] host::Scene Scene() const { return child<host::Scene>("Scene"); }
};

}  // namespace host
