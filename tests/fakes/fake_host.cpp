#include "fakes/fake_host.h"

using automation::Args;
using automation::Error;
using automation::Failure;
using automation::Member;
using automation::Ref;
using automation::Value;

namespace fakes {

void Bag::refuse(std::string_view member) {
  const std::string name = name_ + "." + std::string(member);
  ++world_.attempts[name];
  if (world_.on_attempt) world_.on_attempt(name);
  const auto left = world_.refusals.find(name);
  if (world_.refused.contains(name) || (left != world_.refusals.end() && left->second-- > 0)) {
    throw Failure("refused");
  }
}

std::string Bag::shown(const Value& value) const {
  if (value.is(Value::Kind::Missing)) return "missing";
  if (value.is(Value::Kind::Nothing)) return "nothing";
  if (!value.is(Value::Kind::Object)) return value.to_text();
  const auto bag = std::dynamic_pointer_cast<Bag>(value.to_object());
  return bag ? bag->name_ : "object";
}

Value Bag::get(Member member, Args args) {
  refuse(member.name());
  ++world_.reads[name_ + "." + std::string(member.name())];
  if (member == Member("Count")) return static_cast<std::int32_t>(items.size());
  if (member == Member("_NewEnum")) return automation::Array(items.begin(), items.end());
  if (member == Member("Item") && args[0].text() != nullptr) {
    const auto found = named.find(*args[0].text());
    if (found != named.end()) return Ref(found->second);
    for (const auto& item : items) {
      const auto name = item->members.find("Name");
      if (name != item->members.end() && equal(name->second, args[0])) return Ref(item);
    }
    if (missing_is_nothing) return automation::nothing;
    throw Failure(Error::invalid_argument);
  }
  if (member == Member("Item")) {
    const std::int32_t index = args[0].to_int32();
    if (index < 1 || index > static_cast<std::int32_t>(items.size()))
      throw Failure(Error::subscript_out_of_range);
    return Ref(items[static_cast<std::size_t>(index - 1)]);
  }
  const auto found = members.find(std::string(member.name()));
  if (found == members.end()) throw Failure(Error::no_such_member);
  return found->second;
}

void Bag::put(Member member, Args /*args*/, const Value& value) {
  refuse(member.name());
  members[std::string(member.name())] = value;
  world_.writes.push_back(name_ + "." + std::string(member.name()) + "=" + shown(value));
  if (world_.on_write) world_.on_write();
}

Value Bag::call(Member member, Args args) {
  refuse(member.name());
  std::string line = name_ + "." + std::string(member.name()) + "(";
  for (std::size_t index = 0; index < args.size(); ++index)
    line += (index > 0 ? "," : "") + shown(args[index]);
  world_.writes.push_back(line + ")");
  if (member == Member("Remove") && args[0].is_number()) {
    (void)get("Item", args);  // fails where there is none
    items.erase(items.begin() + args[0].to_int32() - 1);
  }
  if (member == Member("Add") && args.size() == 1) {
    items.push_back(std::dynamic_pointer_cast<Bag>(args[0].to_object()));
  }
  if (member == Member("Add") && args.empty()) return Ref(add("Solid"));
  if (member == Member("Add") && missing_is_nothing) return Ref(parameter(args[0].to_text(), args[3]));
  const auto result = members.find(std::string(member.name()));
  return result == members.end() ? Value() : result->second;
}

}  // namespace fakes
