#include "deskhost/model/tools.h"

#include <algorithm>
#include <array>

#include "deskhost/model/events.h"
#include "deskhost/model/index.h"

namespace deskhost {

using automation::Args;
using automation::Error;
using automation::Failure;
using automation::id;
using automation::Member;
using automation::Value;

namespace {

/// What an event of a tool holds while it is delivered: nothing more is raised for the tool meanwhile.
class Delivery {
 public:
  explicit Delivery(bool& is_delivering) : is_delivering_(is_delivering) { is_delivering_ = true; }
  ~Delivery() { is_delivering_ = false; }
  Delivery(const Delivery&) = delete;
  Delivery& operator=(const Delivery&) = delete;

 private:
  bool& is_delivering_;
};

}  // namespace

RefusedValue::RefusedValue(std::string parameter_name, std::string refused_value, std::string reason,
                           std::string advice)
    : std::runtime_error(parameter_name + "=" + refused_value + ": " + reason),
      name(std::move(parameter_name)),
      value(std::move(refused_value)),
      why(std::move(reason)),
      hint(std::move(advice)) {}

Value Tools::get(Member member, Args args) {
  switch (member.id()) {
    case id("Count"):
      return static_cast<std::int32_t>(list_.size());
    case id("Item"): {
      const Value& key = argument(args, 0);
      const std::string* tool_id = key.text();
      if (tool_id == nullptr) return Value(list_[index_of(key, list_.size())]);
      auto tool = find_by_id(*tool_id);
      if (!tool) throw Failure(Error::invalid_argument);
      return Value(std::move(tool));
    }
    case id("_NewEnum"):
      return automation::Array(list_.begin(), list_.end());
    default:
      return DeskObject::get(member, args);
  }
}

Value Tools::call(Member member, Args args) {
  switch (member.id()) {
    case id("Add"): {
      const auto tool = object_argument<Tool>(argument(args, 0));
      if (!tool) throw Failure(Error::object_not_set);
      add(tool);
      return {};
    }
    case id("Remove"): {
      const auto tool = find_by_id(argument(args, 0).to_text());
      if (!tool) throw Failure(Error::invalid_argument);
      remove(tool);
      return {};
    }
    default:
      return DeskObject::call(member, args);
  }
}

std::shared_ptr<Tool> Tools::find_by_id(std::string_view tool_id) const {
  const auto found = by_id_.find(tool_id);
  if (found == by_id_.end()) return nullptr;
  return std::static_pointer_cast<Tool>(found->second.front()->shared_from_this());
}

void Tools::append(const std::shared_ptr<Tool>& tool) {
  if (!tool->owner_.expired()) throw Failure(Error::invalid_argument);
  list_.push_back(tool);
  tool->owner_ = std::static_pointer_cast<Tools>(shared_from_this());
  tool->order_ = next_order_++;
  enter_index(*tool);
}

void Tools::add(const std::shared_ptr<Tool>& tool) {
  append(tool);
  std::array<Value, 1> args{Value(tool)};
  raise("OnCreate", *tool, args);
}

void Tools::remove(const std::shared_ptr<Tool>& tool) {
  const auto self = shared_from_this();
  // A handler may take the reference itself away.
  const auto stays_alive = tool;  // NOLINT(performance-unnecessary-copy-initialization)
  if (tool->owner_.lock() != self) return;
  std::array<Value, 1> args{Value(tool)};
  raise("OnDelete", *tool, args);
  // A handler may have taken it out already.
  if (tool->owner_.lock() == self) take_out(*tool);
}

void Tools::user_modify(const std::shared_ptr<Tool>& tool,
                        const std::vector<std::pair<std::string, std::string>>& changes) {
  std::vector<catalogue::Index> parameters;
  for (const auto& [name, value] : changes) {
    const auto parameter = catalogue::find(name);
    if (!parameter) {
      throw RefusedValue(name, value, "there is no such parameter",
                         "parameters have the names of a document file");
    }
    if (!catalogue::slot_of(tool->tool_class(), *parameter)) {
      const std::string tool_class = std::to_string(tool->tool_class());
      throw RefusedValue(name, value, "a tool of class " + tool_class + " doesn't have this parameter",
                         "change a parameter that the class has");
    }
    const catalogue::Kind kind = catalogue::parameters()[*parameter].kind;
    try {
      static_cast<void>(catalogue::converted(kind, value));
    } catch (const Failure&) {
      throw RefusedValue(name, value, "the value has to be " + std::string(catalogue::wanted(kind)),
                         std::string(catalogue::hint(kind)));
    }
    parameters.push_back(*parameter);
  }
  const std::string old_name = tool->name();
  for (std::size_t i = 0; i < changes.size(); ++i) tool->write_quietly(parameters[i], changes[i].second);
  raise_modified(*tool, old_name);
}

void Tools::raise(Member event, Tool& tool, std::span<Value> args) {
  if (tool.is_delivering_) return;
  const auto self = shared_from_this();
  const auto stays_alive = tool.shared_from_this();
  const Delivery delivery(tool.is_delivering_);
  raise_reported(*desk_, hub_, event, args);
}

void Tools::raise_modified(Tool& tool, const std::string& old_name) {
  std::array<Value, 3> args{Value(old_name), Value(std::int32_t{0}), Value(tool.shared_from_this())};
  raise("OnModify", tool, args);
}

void Tools::renamed(Tool& tool, std::string_view old_id) {
  leave_index(tool, old_id);
  enter_index(tool);
}

void Tools::enter_index(Tool& tool) {
  std::vector<Tool*>& same = by_id_[tool.name()];
  same.insert(std::ranges::upper_bound(same, tool.order_, {}, &Tool::order_), &tool);
}

void Tools::leave_index(const Tool& tool, std::string_view id) {
  const auto found = by_id_.find(id);
  std::vector<Tool*>& same = found->second;
  same.erase(std::ranges::lower_bound(same, tool.order_, {}, &Tool::order_));
  if (same.empty()) by_id_.erase(found);
}

void Tools::take_out(const Tool& tool) {
  leave_index(tool, tool.name());
  const auto place = std::ranges::lower_bound(list_, tool.order_, {},
                                              [](const std::shared_ptr<Tool>& each) { return each->order_; });
  (*place)->owner_.reset();
  list_.erase(place);
}

}  // namespace deskhost
