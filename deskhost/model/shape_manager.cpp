#include "deskhost/model/shape_manager.h"

#include <array>

namespace deskhost {

using automation::Args;
using automation::Error;
using automation::Failure;
using automation::id;
using automation::Member;
using automation::Ref;
using automation::Value;

namespace {

class ShapeCache final : public DeskObject {
 public:
  [[nodiscard]] std::string trace_name() const override { return "ShapeCache"; }
  Value call(Member member, Args args) override {
    if (member.id() != id("Clear")) return DeskObject::call(member, args);
    return {};
  }
};

struct Setting {
  Member member;
  Value value;
};

Ref set_object(const Value& value) {
  Ref object = value.to_object();
  if (!object) throw Failure(Error::object_not_set);
  return object;
}

class ShapeManager final : public DeskObject {
 public:
  [[nodiscard]] std::string trace_name() const override { return "ShapeManager"; }

  Value get(Member member, Args args) override {
    if (member.id() == id("ShapeCache")) return Value(cache_);
    for (const Setting& setting : settings_) {
      if (setting.member == member) return setting.value;
    }
    return DeskObject::get(member, args);
  }

  void put(Member member, Args args, const Value& value) override {
    for (Setting& setting : settings_) {
      if (setting.member == member) {
        setting.value = converted(value, setting.value.kind());
        return;
      }
    }
    DeskObject::put(member, args, value);
  }

  Value call(Member member, Args args) override {
    switch (member.id()) {
      case id("Attach"):
        static_cast<void>(argument(args, 0).to_object());
        return {};
      case id("RefreshToolShape"):
        set_object(argument(args, 0));
        static_cast<void>(argument(args, 1).to_int32());
        return std::int32_t{1};
      case id("RefreshToolShapes"):
      case id("RestoreToolShapes"):
        static_cast<void>(argument(args, 1).to_int32());
        return set_object(argument(args, 0))->get("Count", {}).to_int32();
      default:
        return DeskObject::call(member, args);
    }
  }

 private:
  static Value converted(const Value& value, Value::Kind kind) {
    if (kind == Value::Kind::Text) return value.to_text();
    if (kind == Value::Kind::Bool) return value.to_bool();
    return value.to_int32();
  }

  std::shared_ptr<ShapeCache> cache_ = std::make_shared<ShapeCache>();
  std::array<Setting, 5> settings_{{
      {"ExePath", ""},
      {"UserModelsPath", ""},
      {"ShapeColor", std::int32_t{0}},
      {"ShapeMode", std::int32_t{0}},
      {"ShapeFlag", false},
  }};
};

}  // namespace

std::shared_ptr<DeskObject> make_shape_manager() {
  return std::make_shared<ShapeManager>();
}

}  // namespace deskhost
