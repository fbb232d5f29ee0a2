#include "deskhost/session/gate.h"

#include <algorithm>
#include <array>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "deskhost/session/trace.h"

namespace deskhost {

using automation::Args;
using automation::Array;
using automation::Binding;
using automation::Error;
using automation::EventHandler;
using automation::Failure;
using automation::Member;
using automation::Object;
using automation::Ref;
using automation::Value;

namespace {

constexpr const char* refusal = "The host refuses the call";
constexpr std::array<const char*, 4> kind_names{"get", "put", "call", "create"};
constexpr std::size_t names_shown = 5;

class Wrapped;

/// Neighbours in the list of the wrapped objects that live.
struct Link {
  Link* previous = this;
  Link* next = this;
};

/// Tells the end of a call, whichever way it is left.
class Finish {
 public:
  explicit Finish(const std::function<void()>& finished) : finished_(finished) {}
  ~Finish() {
    if (finished_) finished_();
  }
  Finish(const Finish&) = delete;
  Finish& operator=(const Finish&) = delete;

 private:
  const std::function<void()>& finished_;
};

class GateState final : public Gate, public std::enable_shared_from_this<GateState> {
 public:
  explicit GateState(GateOptions options)
      : options_(std::move(options)), refuse_once_(options_.fail_call), refuse_from_(options_.fail_from) {
    if (options_.trace) trace_.emplace(*options_.trace);
  }

  Value wrap(const Value& value) override;
  Value unwrap(const Value& value) override;
  Ref create(std::string_view class_name, const std::function<Ref()>& make) override;
  void refuse(std::uint64_t first, std::uint64_t last) override {
    refuse_once_ = 0;
    refuse_from_ = first;
    refuse_to_ = last;
  }
  [[nodiscard]] std::uint64_t calls() const override { return calls_; }
  [[nodiscard]] std::string left_behind() const override;
  void end_trace() override {
    trace_.reset();
    options_.observer = nullptr;
    options_.listener = nullptr;
  }

  /// One call into the model, counted; `perform` gets the arguments unwrapped.
  template <class Perform>
  Value run(CallKind kind, const Object& target, Member member, Args args, const Value* put,
            const Perform& perform) {
    const std::uint64_t n = ++calls_;
    if (options_.observer) options_.observer(kind, target, member);
    const Finish at_end(options_.finished);
    const auto passed = [&] {
      return heard({kind, target, member, args, put, nullptr, nullptr}, n, perform);
    };
    if (!trace_) return passed();
    return traced(n, kind, trace_name_of(target), member.name(), args, put, passed);
  }

  void deliver(const std::weak_ptr<Object>& source, const EventHandler& handler, Member event, Args args);

  void link(Link& node) noexcept {
    node.previous = live_.previous;
    node.next = &live_;
    node.previous->next = node.next->previous = &node;
  }
  std::multiset<std::string>& bindings() noexcept { return bindings_; }

 private:
  template <class Perform>
  Value pass(std::uint64_t n, Args args, const Perform& perform);
  template <class Perform>
  Value heard(EndedCall call, std::uint64_t n, const Perform& perform);
  template <class Perform>
  Value traced(std::uint64_t n, CallKind kind, std::string_view on, std::string_view member, Args args,
               const Value* put, const Perform& perform);
  void refuse_if_told(std::uint64_t n) const {
    if (n == refuse_once_ || (refuse_from_ != 0 && n >= refuse_from_ && n <= refuse_to_)) {
      throw Failure(refusal);
    }
  }

  GateOptions options_;
  std::uint64_t refuse_once_ = 0;
  std::uint64_t refuse_from_ = 0;
  std::uint64_t refuse_to_ = UINT64_MAX;
  std::optional<Trace> trace_;
  std::uint64_t calls_ = 0;
  Link live_;
  std::multiset<std::string> bindings_;
};

/// A model object as the add-in holds it.
class Wrapped final : public Object, public automation::Events, public Link {
 public:
  Wrapped(std::shared_ptr<GateState> gate, Ref target) : gate_(std::move(gate)), target_(std::move(target)) {
    gate_->link(*this);
  }
  ~Wrapped() override {
    previous->next = next;
    next->previous = previous;
  }
  Wrapped(const Wrapped&) = delete;
  Wrapped& operator=(const Wrapped&) = delete;

  // An event inside a call may end this object: gate and target are held until the call is over.
  Value get(Member member, Args args) override {
    const std::shared_ptr<GateState> gate = gate_;
    const Ref target = target_;
    return gate->run(CallKind::get, *target, member, args, nullptr,
                     [&](Args inner) { return target->get(member, inner); });
  }
  void put(Member member, Args args, const Value& value) override {
    const std::shared_ptr<GateState> gate = gate_;
    const Ref target = target_;
    gate->run(CallKind::put, *target, member, args, &value, [&](Args inner) {
      target->put(member, inner, gate->unwrap(value));
      return Value();
    });
  }
  Value call(Member member, Args args) override {
    const std::shared_ptr<GateState> gate = gate_;
    const Ref target = target_;
    return gate->run(CallKind::call, *target, member, args, nullptr,
                     [&](Args inner) { return target->call(member, inner); });
  }

  [[nodiscard]] std::string type_name() const override { return target_->type_name(); }
  Events* events() noexcept override { return target_->events() ? this : nullptr; }

  [[nodiscard]] Binding bind(EventHandler handler) override {
    auto inner = std::make_shared<Binding>(target_->events()->bind(
        [gate = gate_, source = std::weak_ptr(target_), handler = std::move(handler)](
            Member event, Args args) { gate->deliver(source, handler, event, args); }));
    return Binding(
        [gate = gate_, inner = std::move(inner), place = gate_->bindings().insert(trace_name_of(*target_))] {
          inner->release();
          gate->bindings().erase(place);
        });
  }

  [[nodiscard]] const Ref& target() const noexcept { return target_; }

 private:
  std::shared_ptr<GateState> gate_;
  Ref target_;
};

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

}  // namespace

std::shared_ptr<Gate> make_gate(GateOptions options) {
  return std::make_shared<GateState>(std::move(options));
}

}  // namespace deskhost
