// A host object as ours.

#include <array>
#include <optional>

#include "platform/com/arguments.h"
#include "platform/com/bridge.h"
#include "platform/com/class_info.h"
#include "platform/com/dispatch_types.h"
#include "platform/com/event_source.h"
#include "platform/com/object_dispatch.h"
#include "platform/com/result.h"

namespace platform::com {

using automation::Args;
using automation::Array;
using automation::Binding;
using automation::Error;
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
  HRESULT invoke(const MemberPlace& place, WORD flags, DISPPARAMS* params, Variant& result, EXCEPINFO& info) {
    return face(place.face)->Invoke(place.id, IID_NULL, neutral, flags, params, result.out(), &info, nullptr);
  }
  DispatchType& type() {
    if (!type_) type_ = types_->of(dispatch_.get());
    return *type_;
  }
  MemberPlace place_of(Member member);
  MemberPlace look_up(const std::wstring& name);
  IDispatch* face(const IID& iid);
  const std::vector<IID>& faces();

  ComPtr<IDispatch> dispatch_;
  std::shared_ptr<DispatchTypes> types_;
  std::shared_ptr<DispatchType> type_;
  MemberPlaces own_places_;  // of members that not every object of the type has there
  std::optional<std::vector<IID>> faces_;
  std::vector<std::pair<IID, ComPtr<IDispatch>>> held_faces_;  // null for one that the object refused
};

DISPID id_of(IDispatch* face, const std::wstring& name) {
  std::wstring asked = name;
  wchar_t* text = asked.data();
  DISPID id = DISPID_UNKNOWN;
  return SUCCEEDED(face->GetIDsOfNames(IID_NULL, &text, 1, neutral, &id)) ? id : DISPID_UNKNOWN;
}

/// One of the object's dispatch interfaces, asked for once; null where it has none such.
IDispatch* ComObject::face(const IID& iid) {
  if (iid == IID_NULL) return dispatch_.get();
  for (const auto& [known, held] : held_faces_) {
    if (known == iid) return held.get();
  }
  ComPtr<IDispatch> held;
  if (FAILED(dispatch_->QueryInterface(iid, held.out_void()))) held.detach();
  return held_faces_.emplace_back(iid, std::move(held)).second.get();
}

const std::vector<IID>& ComObject::faces() {
  if (!faces_) faces_ = other_faces_of(dispatch_.get(), type().info.get());
  return *faces_;
}

/// Throws Failure(no_such_member).
MemberPlace ComObject::place_of(Member member) {
  if (member == Member("_NewEnum")) return {IID_NULL, DISPID_NEWENUM};
  DispatchType& known = type();
  MemberPlace place;
  if (const auto shared = known.places.find(member.id());
      shared != known.places.end() && face(shared->second.face) != nullptr) {
    place = shared->second;
  } else if (const auto own = own_places_.find(member.id()); own != own_places_.end()) {
    place = own->second;
  } else {
    const std::wstring name = win32::wide(member.name());
    place = look_up(name);
    // Classes that share a type may differ in their other faces.
    const bool may_differ = place.id == DISPID_UNKNOWN && !faces().empty();
    const DISPID answer = place.face == IID_NULL ? place.id : DISPID_UNKNOWN;
    const bool is_shared = !may_differ && known.is_shared(name, answer);
    (is_shared ? known.places : own_places_).insert_or_assign(member.id(), place);
  }
  if (place.id == DISPID_UNKNOWN) throw Failure(Error::no_such_member);
  return place;
}

/// What the object answers for a name: by the interface that it was given by, or by the first other one that
/// knows it.
MemberPlace ComObject::look_up(const std::wstring& name) {
  if (const DISPID id = id_of(dispatch_.get(), name); id != DISPID_UNKNOWN) return {IID_NULL, id};
  for (const IID& iid : faces()) {
    IDispatch* const other = face(iid);
    if (other == nullptr) continue;
    if (const DISPID id = id_of(other, name); id != DISPID_UNKNOWN) return {iid, id};
  }
  return {};
}

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
  MemberPlace place = place_of(member);
  OutgoingArguments outgoing(args, nullptr, known.records);
  Variant result;
  EXCEPINFO info{};
  HRESULT done = invoke(place, flags, outgoing.get(), result, info);
  if (done == DISP_E_TYPEMISMATCH) {  // before the member ran: it wants a reference to its own type
    outgoing.pass_typed();
    done = invoke(place, flags, outgoing.get(), result, info);
  }
  const bool enumerates = place.id == DISPID_NEWENUM;
  if (enumerates && done == DISP_E_MEMBERNOTFOUND) {  // its id is every interface's, so that no name is asked
    for (const IID& iid : faces()) {
      place.face = iid;
      if (face(iid) != nullptr) done = invoke(place, flags, outgoing.get(), result, info);
      if (done != DISP_E_MEMBERNOTFOUND) break;
    }
  }
  check_invoke(done, info);
  outgoing.read_back(args);
  if (enumerates && !(V_VT(&result.get()) & VT_ARRAY)) return all_of(result.get());
  return to_value(result.get());
}

void ComObject::put(Member member, Args args, const Value& value) {
  DispatchType& known = type();
  const MemberPlace place = place_of(member);
  OutgoingArguments outgoing(args, &value, known.records);
  Variant result;
  EXCEPINFO info{};
  const bool is_reference = value.is(Value::Kind::Object) || value.is(Value::Kind::Nothing);
  HRESULT done = invoke(place, is_reference ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT, outgoing.get(),
                        result, info);
  if (is_reference && done == DISP_E_MEMBERNOTFOUND) {
    done = invoke(place, DISPATCH_PROPERTYPUT, outgoing.get(), result, info);
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
