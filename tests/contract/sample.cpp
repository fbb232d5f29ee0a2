#include "contract/sample.h"

#include "deskhost/session/gate.h"

namespace contract {

using automation::Args;
using automation::Array;
using automation::Error;
using automation::Failure;
using automation::id;
using automation::Member;
using automation::Ref;
using automation::Value;

Value Sample::get(Member member, Args args) {
  switch (member.id()) {
    case id("Name"):
      return name_;
    case id("Last"):
      return last_put;
    case id("Item"):
      return Value(children.at(static_cast<std::size_t>(deskhost::argument(args, 0).to_int32())));
    case id("_NewEnum"):
      return Array(children.begin(), children.end());
    case id("Both"):
      return "got";
    default:
      return DeskObject::get(member, args);
  }
}

void Sample::put(Member member, Args args, const Value& value) {
  if (member != Member("Setting")) return DeskObject::put(member, args, value);
  last_put = args.empty() ? value : Value(args[0].to_text() + "=" + value.to_text());
}

Value Sample::call(Member member, Args args) {
  switch (member.id()) {
    case id("Echo"):
      return args.empty() ? Value() : args[0];
    case id("Kind"):
      return name_of(args[0].kind());
    case id("Replace"):
      args[0] = args[1];
      return {};
    case id("Fill"):
      args[0].to_record()->at("Id") = "7";
      args[0].to_record()->at("Factor") = 0.25;
      return {};
    case id("Refuse"):
      throw Failure(Error::permission_denied);
    case id("Complain"):
      throw Failure("Fräser \"Ø1.5\" fehlt…");
    case id("Break"):
      throw std::out_of_range("inside");
    case id("Raise"): {
      std::vector<Value> event{args[0], false};
      hub.raise("OnChange", event);
      return event[1];
    }
    case id("Both"):
      return "called";
    default:
      return DeskObject::call(member, args);
  }
}

std::vector<Way> common_ways() {
  return {
      {"Straight", [](const Ref& object) { return object; }},
      {"Gate", [](const Ref& object) { return deskhost::make_gate({})->wrap(Value(object)).to_object(); }}};
}

}  // namespace contract
