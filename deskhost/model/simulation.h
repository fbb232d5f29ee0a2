#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "automation/event_hub.h"
#include "deskhost/model/collection.h"

namespace deskhost {

using Triple = std::array<double, 3>;

/// Three numbers. Members: X, Y, Z, SetXYZ(x, y, z).
class Coordinates : public DeskObject {
 public:
  automation::Value get(automation::Member member, automation::Args args) override;
  void put(automation::Member member, automation::Args args, const automation::Value& value) override;
  automation::Value call(automation::Member member, automation::Args args) override;

  Triple xyz{};
};
class Point final : public Coordinates {
 public:
  [[nodiscard]] std::string trace_name() const override { return "Point"; }
};
class Vector final : public Coordinates {
 public:
  [[nodiscard]] std::string trace_name() const override { return "Vector"; }
};
std::shared_ptr<DeskObject> make_point();
std::shared_ptr<DeskObject> make_vector();

/// Member: Name, the text of a document tool's Name.
class SimTool final : public DeskObject {
 public:
  SimTool(int number, std::string name_text) : name(std::move(name_text)), number_(number) {}
  [[nodiscard]] std::string trace_name() const override;
  automation::Value get(automation::Member member, automation::Args args) override;

  const std::string name;

 private:
  int number_;
};

/// Members: Name, Rotate(point, vector, angle in radians); the calls are kept in order.
class SimSolid final : public DeskObject {
 public:
  struct Rotation {
    Triple point;
    Triple vector;
    double angle;
  };
  SimSolid(int number, std::string name_text) : name(std::move(name_text)), number_(number) {}
  [[nodiscard]] std::string trace_name() const override;
  automation::Value get(automation::Member member, automation::Args args) override;
  automation::Value call(automation::Member member, automation::Args args) override;

  const std::string name;
  std::vector<Rotation> rotations;

 private:
  int number_;
};

/// Members: Name, Origin (a point of the caller's own).
class SimTurret final : public DeskObject {
 public:
  SimTurret(int number, std::string name_text, const Triple& place)
      : name(std::move(name_text)), origin(place), number_(number) {}
  [[nodiscard]] std::string trace_name() const override;
  automation::Value get(automation::Member member, automation::Args args) override;

  const std::string name;
  const Triple origin;

 private:
  int number_;
};

/// Members: SimTools, SimSolids, SimTurrets.
class Scene final : public DeskObject {
 public:
  [[nodiscard]] std::string trace_name() const override { return "Scene"; }
  automation::Value get(automation::Member member, automation::Args args) override;

  const std::shared_ptr<Collection<SimTool>> tools = std::make_shared<Collection<SimTool>>("SimTools");
  const std::shared_ptr<Collection<SimSolid>> solids = std::make_shared<Collection<SimSolid>>("SimSolids");
  const std::shared_ptr<Collection<SimTurret>> turrets =
      std::make_shared<Collection<SimTurret>>("SimTurrets");
};

/// Member: Scene. Events: AfterBegin(), OnSimulateTool(tool).
class Simulation final : public DeskObject {
 public:
  explicit Simulation(DeskRef desk) : desk_(std::move(desk)) {}
  [[nodiscard]] std::string trace_name() const override { return "Simulation"; }
  automation::Value get(automation::Member member, automation::Args args) override;
  automation::Events* events() noexcept override { return &hub_; }

  /// AfterBegin, then OnSimulateTool for each tool of the scene.
  void run();

  const std::shared_ptr<Scene> scene = std::make_shared<Scene>();

 private:
  DeskRef desk_;
  automation::EventHub hub_;
};

}  // namespace deskhost
