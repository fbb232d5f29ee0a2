#pragma once

#include <memory>
#include <string>
#include <vector>

#include "automation/event_hub.h"
#include "deskhost/model/desk_object.h"

namespace contract {

/// A host object with a member for each thing that has to come through a bridge unharmed.
class Sample : public deskhost::DeskObject {
 public:
  explicit Sample(std::string name) : name_(std::move(name)) {}
  [[nodiscard]] std::string trace_name() const override { return name_; }
  automation::Events* events() noexcept override { return &hub; }

  automation::Value get(automation::Member member, automation::Args args) override;
  void put(automation::Member member, automation::Args args, const automation::Value& value) override;
  automation::Value call(automation::Member member, automation::Args args) override;

  std::vector<std::shared_ptr<Sample>> children;
  automation::Value last_put;
  automation::EventHub hub;

 private:
  std::string name_;
};

/// One way from a caller to an object.
struct Way {
  const char* name;
  /// The object as it is seen from the other end.
  std::function<automation::Ref(const automation::Ref&)> across;
};

/// Those that every system has: straight, and through the desk host's gate.
std::vector<Way> common_ways();
/// Those of this system.
std::vector<Way> system_ways();

}  // namespace contract
