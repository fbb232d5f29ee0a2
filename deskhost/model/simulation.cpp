#include "deskhost/model/simulation.h"

#include "deskhost/model/events.h"

namespace deskhost {

using automation::Args;
using automation::Error;
using automation::Failure;
using automation::id;
using automation::Member;
using automation::Value;

namespace {

std::string numbered(const char* name, int number) {
  return std::string(name) + "(" + std::to_string(number) + ")";
}

double* axis(Triple& xyz, Member member) {
  switch (member.id()) {
    case id("X"):
      return &xyz[0];
    case id("Y"):
      return &xyz[1];
    case id("Z"):
      return &xyz[2];
    default:
      return nullptr;
  }
}

template <class T>
Triple coordinates(const Value& value) {
  const auto object = object_argument<T>(value);
  if (!object) throw Failure(Error::object_not_set);
  return object->xyz;
}

}  // namespace

Value Coordinates::get(Member member, Args args) {
  if (const double* value = axis(xyz, member)) return *value;
  return DeskObject::get(member, args);
}

void Coordinates::put(Member member, Args args, const Value& value) {
  double* field = axis(xyz, member);
  if (field == nullptr) return DeskObject::put(member, args, value);
  *field = finite_number(value);
}

Value Coordinates::call(Member member, Args args) {
  if (member.id() != id("SetXYZ")) return DeskObject::call(member, args);
  xyz = {finite_number(argument(args, 0)), finite_number(argument(args, 1)),
         finite_number(argument(args, 2))};
  return {};
}

std::shared_ptr<DeskObject> make_point() {
  return std::make_shared<Point>();
}
std::shared_ptr<DeskObject> make_vector() {
  return std::make_shared<Vector>();
}

std::string SimTool::trace_name() const {
  return numbered("SimTool", number_);
}

Value SimTool::get(Member member, Args args) {
  if (member.id() == id("Name")) return name;
  return DeskObject::get(member, args);
}

std::string SimSolid::trace_name() const {
  return numbered("SimSolid", number_);
}

Value SimSolid::get(Member member, Args args) {
  if (member.id() == id("Name")) return name;
  return DeskObject::get(member, args);
}

Value SimSolid::call(Member member, Args args) {
  if (member.id() != id("Rotate")) return DeskObject::call(member, args);
  rotations.push_back({coordinates<Point>(argument(args, 0)), coordinates<Vector>(argument(args, 1)),
                       finite_number(argument(args, 2))});
  return {};
}

std::string SimTurret::trace_name() const {
  return numbered("SimTurret", number_);
}

Value SimTurret::get(Member member, Args args) {
  switch (member.id()) {
    case id("Name"):
      return name;
    case id("Origin"): {
      const auto point = std::make_shared<Point>();
      point->xyz = origin;
      return Value(point);
    }
    default:
      return DeskObject::get(member, args);
  }
}

Value Scene::get(Member member, Args args) {
  switch (member.id()) {
    case id("SimTools"):
      return Value(tools);
    case id("SimSolids"):
      return Value(solids);
    case id("SimTurrets"):
      return Value(turrets);
    default:
      return DeskObject::get(member, args);
  }
}

Value Simulation::get(Member member, Args args) {
  if (member.id() == id("Scene")) return Value(scene);
  return DeskObject::get(member, args);
}

void Simulation::run() {
  const auto self = shared_from_this();  // a handler may end the document
  raise_reported(*desk_, hub_, "AfterBegin", {});
  const auto simulated = scene->tools->items;
  for (const auto& tool : simulated) {
    std::array<Value, 1> args{Value(tool)};
    raise_reported(*desk_, hub_, "OnSimulateTool", args);
  }
}

}  // namespace deskhost
