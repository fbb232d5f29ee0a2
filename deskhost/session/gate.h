#pragma once

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

#include "automation/object.h"

namespace deskhost {

enum class CallKind { get, put, call, create };

/// A call that has ended: the target is the model's object, those in arguments and result are as the add-in
/// has them. All of it is borrowed.
struct EndedCall {
  CallKind kind;
  const automation::Object& target;
  automation::Member member;
  automation::Args args;
  const automation::Value* put;     ///< what was written; null for no put
  const automation::Value* result;  ///< null for a refused call
  const char* refusal;              ///< why; null for a call that went well
};

struct GateOptions {
  /// Where every call and event is written, a JSON object a line; null for no trace. Outlives the gate's last
  /// call, or is taken away with `Gate::end_trace`.
  std::ostream* trace = nullptr;
  /// The call of this number fails, once; 0 for none.
  std::uint64_t fail_call = 0;
  /// Every call from this number on fails; 0 for none.
  std::uint64_t fail_from = 0;
  /// Hears every call before it is made; `target` is the model's object. A Failure that it throws is the
  /// call's, and the call isn't made.
  std::function<void(CallKind kind, const automation::Object& target, automation::Member member)> observer =
      {};
  /// Hears the end of every call that `observer` heard, failed or not.
  std::function<void()> finished = {};
  /// Hears every call but creations, once it has ended, with what came of it.
  std::function<void(const EndedCall& call)> listener = {};
  /// False: objects go out as they are, and nothing is counted, traced or refused but creations.
  bool wrap = true;
};

/// The one layer between the add-in and the model. Whatever object goes out through it is wrapped, and so is
/// every object that such an object gives: as a result, an argument by reference or an event's argument. What
/// comes in is unwrapped, so the model sees its own objects only.
class Gate {
 public:
  virtual ~Gate() = default;
  Gate() = default;
  Gate(const Gate&) = delete;
  Gate& operator=(const Gate&) = delete;

  /// The value as the add-in gets it. The wrapped object keeps the model's object and the gate's state alive.
  virtual automation::Value wrap(const automation::Value& value) = 0;
  /// The value as the model gets it.
  virtual automation::Value unwrap(const automation::Value& value) = 0;
  /// A creation by the add-in, counted as a call; `make` gives null for a class that it doesn't know, which
  /// is the failure cannot_create_object.
  virtual automation::Ref create(std::string_view class_name,
                                 const std::function<automation::Ref()>& make) = 0;

  /// From here on the calls numbered `first` to `last` fail, instead of what the options said; 0 and 0 for
  /// none.
  virtual void refuse(std::uint64_t first, std::uint64_t last) = 0;
  /// The calls so far: the number of the last one in the trace.
  [[nodiscard]] virtual std::uint64_t calls() const = 0;
  /// What the add-in still holds: "2 references (Tool(7), Tools), 1 binding (Tools)"; empty for nothing.
  [[nodiscard]] virtual std::string left_behind() const = 0;
  /// From here on nothing is traced or observed.
  virtual void end_trace() = 0;
};

std::shared_ptr<Gate> make_gate(GateOptions options);

}  // namespace deskhost
