// A host object as ours.

#include <array>

#include "platform/com/arguments.h"
#include "platform/com/bridge.h"
#include "platform/com/dispatch_types.h"
#include "platform/com/event_source.h"
#include "platform/com/object_dispatch.h"
#include "platform/com/result.h"

namespace platform::com {

using automation::Args;
using automation::Array;
using automation::Binding;
using automation::EventHandler;
using automation::Failure;
using automation::Member;
using automation::Ref;
using automation::Value;

namespace {

constexpr ULONG batch = 256;

class ComObject final : public automation::Object, public automation::Events {
 public:
  explicit ComObject(IDispatch* dispatch)
      : dispatch_(ComPtr<IDispatch>::share(dispatch)), types_(DispatchTypes::shared()) {}

  Value get(Member member, Args args) override {
    return invoke(member, DISPATCH_PROPERTYGET | DISPATCH_METHOD, args);
  }
  void put(Member member, Args args, const Value& value) override;
  Value call(Member member, Args args) override { return invoke(member, DISPATCH_METHOD, args); }

  automation::Events* events() noexcept override {
    return dispatch_.as<IConnectionPointContainer>() ? this : nullptr;
  }
  [[nodiscard]] Binding bind(EventHandler handler) override {
    return bind_events(dispatch_.get(), std::move(handler));
  }

  [[nodiscard]] const ComPtr<IDispatch>& dispatch() const noexcept { return dispatch_; }

 private:
  Value invoke(Member member, WORD flags, Args args);
  HRESULT invoke(DISPID id, WORD flags, DISPPARAMS* params, Variant& result, EXCEPINFO& info) const {
    return dispatch_->Invoke(id, IID_NULL, neutral, flags, params, result.out(), &info, nullptr);
  }
  DispatchType& type() {
    if (!type_) type_ = types_->of(dispatch_.get());
    return *type_;
  }

  ComPtr<IDispatch> dispatch_;
  std::shared_ptr<DispatchTypes> types_;
  std::shared_ptr<DispatchType> type_;
};

/// All that an enumerator gives.
Array all_of(const VARIANT& enumerator) {
  if (V_VT(&enumerator) != VT_UNKNOWN && V_VT(&enumerator) != VT_DISPATCH)
    throw Failure(automation::Error::type_mismatch);
  const auto items = ComPtr<IUnknown>::share(V_UNKNOWN(&enumerator)).as<IEnumVARIANT>();
  if (!items) throw Failure(automation::Error::type_mismatch);
  Array values;
  for (HRESULT more = S_OK; more == S_OK;) {
    std::array<Variant, batch> given;
    std::array<VARIANT, batch> places{};
    ULONG count = 0;
    more = items->Next(batch, places.data(), &count);
    for (ULONG i = 0; i < count; ++i) given[i].get() = places[i];
    check(more);
    for (ULONG i = 0; i < count; ++i) values.push_back(to_value(given[i].get()));
  }
  return values;
}

Value ComObject::invoke(Member member, WORD flags, Args args) {
  DispatchType& known = type();
  const DISPID id = known.id(dispatch_.get(), member);
  OutgoingArguments outgoing(args, nullptr, known.records);
  Variant result;
  EXCEPINFO info{};
  HRESULT done = invoke(id, flags, outgoing.get(), result, info);
  if (done == DISP_E_TYPEMISMATCH) {  // before the member ran: it wants a reference to its own type
    outgoing.pass_typed();
    done = invoke(id, flags, outgoing.get(), result, info);
  }
  check_invoke(done, info);
  outgoing.read_back(args);
  if (id == DISPID_NEWENUM && !(V_VT(&result.get()) & VT_ARRAY)) return all_of(result.get());
  return to_value(result.get());
}

void ComObject::put(Member member, Args args, const Value& value) {
  DispatchType& known = type();
  const DISPID id = known.id(dispatch_.get(), member);
  OutgoingArguments outgoing(args, &value, known.records);
  Variant result;
  EXCEPINFO info{};
  const bool is_reference = value.is(Value::Kind::Object) || value.is(Value::Kind::Nothing);
  HRESULT done =
      invoke(id, is_reference ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT, outgoing.get(), result, info);
  if (is_reference && done == DISP_E_MEMBERNOTFOUND) {
    done = invoke(id, DISPATCH_PROPERTYPUT, outgoing.get(), result, info);
  }
  check_invoke(done, info);
  outgoing.read_back(args);
}

}  // namespace

Ref make_com_object(IDispatch* dispatch) {
  return std::make_shared<ComObject>(dispatch);
}

Ref import_object(IDispatch* dispatch) {
  if (dispatch == nullptr) return nullptr;
  if (Ref ours = object_behind(dispatch)) return ours;
  return make_com_object(dispatch);
}

ComPtr<IDispatch> export_object(const Ref& object) {
  if (!object) return {};
  if (const auto* bridge = dynamic_cast<const ComObject*>(object.get())) return bridge->dispatch();
  return make_dispatch(object);
}

}  // namespace platform::com
