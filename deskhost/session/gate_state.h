#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "deskhost/session/gate.h"
#include "deskhost/session/trace.h"

/// The gate's own insides; nobody else includes them.
namespace deskhost::insides_of_gate {

using automation::Args;
using automation::Binding;
using automation::EventHandler;
using automation::Failure;
using automation::Member;
using automation::Object;
using automation::Ref;
using automation::Value;

inline constexpr const char* refusal = "The host refuses the call";

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

}  // namespace deskhost::insides_of_gate
