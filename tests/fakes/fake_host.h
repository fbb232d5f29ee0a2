#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "automation/event_hub.h"
#include "automation/object.h"

/// A host of bags: objects that hold what a test puts in, remember what was asked of them, and refuse what
/// the test names.
namespace fakes {

/// What all bags of a test share.
struct World {
  std::vector<std::string> writes;  ///< "Tool.ToolShiftX=1", "Solid.Rotate(…)": puts and calls in their order
  std::map<std::string, int> reads;     ///< how often each property was read
  std::map<std::string, int> attempts;  ///< likewise, and calls, with those that were refused
  std::set<std::string> refused;        ///< "Tool.Style", "Stations.Item": these fail, every time
  std::map<std::string, int> refusals;  ///< likewise, but so many times only
  std::function<void()> on_write;       ///< runs behind each put
  std::function<void(const std::string&)> on_attempt;  ///< runs in front of each access, with its name

  [[nodiscard]] std::string all_writes() const {
    std::string text;
    for (const std::string& line : writes) text += line + '\n';
    return text;
  }
};

class Bag : public automation::Object {
 public:
  Bag(World& world, std::string name) : name_(std::move(name)), world_(world) {}

  std::map<std::string, automation::Value> members;   ///< properties, and the results of calls
  std::map<std::string, std::shared_ptr<Bag>> named;  ///< Item(text)
  std::vector<std::shared_ptr<Bag>>
      items;                        ///< Item(number or Name), Count, _NewEnum, Add(object), Remove(number)
  bool missing_is_nothing = false;  ///< what Item gives for a name that isn't there
  automation::EventHub hub;

  std::shared_ptr<Bag> child(const std::string& member, const std::string& name) {
    auto bag = std::make_shared<Bag>(world_, name);
    members[member] = automation::Ref(bag);
    return bag;
  }
  std::shared_ptr<Bag> add(const std::string& name) {
    return items.emplace_back(std::make_shared<Bag>(world_, name));
  }
  std::shared_ptr<Bag> parameter(const std::string& key, const automation::Value& value) {
    auto bag = std::make_shared<Bag>(world_, name_ + "." + key);
    bag->members["Value"] = value;
    return named[key] = bag;
  }
  [[nodiscard]] double number(const std::string& member) const { return members.at(member).to_double(); }
  [[nodiscard]] const std::string& name() const { return name_; }

  automation::Value get(automation::Member member, automation::Args args) override;
  void put(automation::Member member, automation::Args args, const automation::Value& value) override;
  automation::Value call(automation::Member member, automation::Args args) override;
  automation::Events* events() noexcept override { return &hub; }

 private:
  void refuse(std::string_view member);
  std::string shown(const automation::Value& value) const;

  std::string name_;
  World& world_;
};

}  // namespace fakes
