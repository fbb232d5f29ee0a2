#pragma once

#include <automation/object.h>

#include <functional>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

/// A host that a test can spoil: every object is a table of members, and a member that is taken out is one
/// that the host refuses. Documents have the desk host's form.
namespace json_host {

using automation::Args;
using automation::Value;

class Node : public automation::Object {
 public:
  using Handler = std::function<Value(Args)>;
  std::map<std::string, Handler, std::less<>> members;
  /// Calls to any node so far.
  static inline std::uint64_t calls = 0;

  void set(const std::string& member, Value value) {
    members[member] = [value = std::move(value)](Args) { return value; };
  }
  Value get(automation::Member member, Args args) override {
    ++calls;
    const auto found = members.find(member.name());
    if (found == members.end()) throw automation::Failure(automation::Error::no_such_member);
    return found->second(args);
  }
  Value call(automation::Member member, Args args) override { return get(member, args); }
  void put(automation::Member /*member*/, Args /*args*/, const Value& /*value*/) override {
    throw automation::Failure(automation::Error::no_such_member);
  }
};
using NodeRef = std::shared_ptr<Node>;

/// The object "Document" of a host, from JSON, under an application that speaks English.
struct Host {
  explicit Host(const nlohmann::json& json);

  NodeRef application = std::make_shared<Node>();
  NodeRef document;
  std::shared_ptr<std::vector<NodeRef>> tools = std::make_shared<std::vector<NodeRef>>();
  std::vector<NodeRef> operations;

  /// The object that a member of `node` gives.
  static Node& child(const Node& node, std::string_view member, std::vector<Value> args = {});
};

}  // namespace json_host
