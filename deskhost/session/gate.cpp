#include "deskhost/session/gate.h"

#include <algorithm>
#include <array>
#include <vector>

#include "deskhost/session/gate_state.h"

namespace deskhost {

using automation::Array;
using automation::Error;

namespace insides_of_gate {
namespace {

constexpr std::array<const char*, 4> kind_names{"get", "put", "call", "create"};
constexpr std::size_t names_shown = 5;

bool holds_objects(const Value& value) {
  return value.is(Value::Kind::Object) ||
         (value.is(Value::Kind::Array) && std::ranges::any_of(value.to_array(), holds_objects));
}

template <class Change>
Value each_object(const Value& value, const Change& change) {
  if (value.is(Value::Kind::Object)) return change(value.to_object());
  if (!holds_objects(value)) return value;
  Array changed;
  for (const Value& element : value.to_array()) changed.push_back(each_object(element, change));
  return changed;
}

const Wrapped* as_wrapped(const Ref& object) {
  return dynamic_cast<const Wrapped*>(object.get());
}

bool same_object(const Value& a, const Value& b) {
  return a.is(Value::Kind::Object) && b.is(Value::Kind::Object) && a.to_object() == b.to_object();
}

std::string counted(std::size_t count, const char* noun, const std::vector<std::string>& names) {
  std::string text = std::to_string(count) + " " + noun + (count == 1 ? "" : "s") + " (";
  for (std::size_t i = 0; i < std::min(names.size(), names_shown); ++i) text += (i ? ", " : "") + names[i];
  return text + (names.size() > names_shown ? ", …)" : ")");
}

}  // namespace

Value GateState::wrap(const Value& value) {
  if (!options_.wrap) return value;
  return each_object(value, [this](const Ref& object) -> Value {
    if (as_wrapped(object)) return object;
    return Ref(std::make_shared<Wrapped>(shared_from_this(), object));
  });
}

Value GateState::unwrap(const Value& value) {
  return each_object(value, [](const Ref& object) -> Value {
    const Wrapped* wrapped = as_wrapped(object);
    return wrapped ? wrapped->target() : object;
  });
}

template <class Perform>
Value GateState::pass(std::uint64_t n, Args args, const Perform& perform) {
  refuse_if_told(n);
  if (std::ranges::none_of(args, holds_objects)) {
    Value result = perform(args);
    for (Value& value : args) {
      if (holds_objects(value)) value = wrap(value);
    }
    return holds_objects(result) ? wrap(result) : result;
  }
  std::vector<Value> given;
  for (const Value& value : args) given.push_back(unwrap(value));
  std::vector<Value> inner = given;
  const Value result = perform(Args(inner));
  for (std::size_t i = 0; i < args.size(); ++i) {
    // An argument that the callee left alone stays the object that the caller gave.
    if (!same_object(given[i], inner[i])) args[i] = wrap(inner[i]);
  }
  return wrap(result);
}

template <class Perform>
Value GateState::heard(EndedCall call, std::uint64_t n, const Perform& perform) {
  if (!options_.listener) return pass(n, call.args, perform);
  try {
    Value result = pass(n, call.args, perform);
    call.result = &result;
    options_.listener(call);
    return result;
  } catch (const Failure& failure) {
    // what the listener itself throws is no call's
    if (call.result != nullptr) throw;
    call.refusal = failure.what();
    options_.listener(call);
    throw;
  }
}

template <class Perform>
Value GateState::traced(std::uint64_t n, CallKind kind, std::string_view on, std::string_view member,
                        Args args, const Value* put, const Perform& perform) {
  std::vector<Value> inner;
  for (const Value& value : args) inner.push_back(unwrap(value));
  const Value inner_put = put ? unwrap(*put) : Value();
  const std::size_t line = trace_->begin({n, kind_names[static_cast<std::size_t>(kind)], on, member}, inner,
                                         put ? &inner_put : nullptr);
  try {
    Value result = perform();
    if (trace_) trace_->end(line, unwrap(result));
    return result;
  } catch (const std::exception& failure) {
    if (trace_) trace_->fail(line, failure.what());
    throw;
  }
}

Ref GateState::create(std::string_view class_name, const std::function<Ref()>& make) {
  const std::uint64_t n = ++calls_;
  const auto perform = [&]() -> Value {
    refuse_if_told(n);
    const Ref object = make();
    if (!object) throw Failure(Error::cannot_create_object);
    return wrap(object);
  };
  if (!trace_) return perform().to_object();
  return traced(n, CallKind::create, class_name, "", {}, nullptr, perform).to_object();
}

void GateState::deliver(const std::weak_ptr<Object>& source, const EventHandler& handler, Member event,
                        Args args) {
  if (trace_) {
    const Ref alive = source.lock();
    trace_->event(alive ? trace_name_of(*alive) : "Object", event.name(), args);
  }
  std::vector<Value> outer;
  for (const Value& value : args) outer.push_back(wrap(value));
  handler(event, outer);
  for (std::size_t i = 0; i < args.size(); ++i) args[i] = unwrap(outer[i]);
}

std::string GateState::left_behind() const {
  std::vector<std::string> references;
  for (const Link* link = live_.next; link != &live_; link = link->next) {
    references.push_back(trace_name_of(*static_cast<const Wrapped*>(link)->target()));
  }
  std::string text;
  if (!references.empty()) text = counted(references.size(), "reference", references);
  if (!bindings_.empty()) {
    if (!text.empty()) text += ", ";
    text += counted(bindings_.size(), "binding", {bindings_.begin(), bindings_.end()});
  }
  return text;
}

}  // namespace insides_of_gate

std::shared_ptr<Gate> make_gate(GateOptions options) {
  return std::make_shared<insides_of_gate::GateState>(std::move(options));
}

}  // namespace deskhost
