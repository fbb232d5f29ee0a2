// One of our objects as a host's.

#include "platform/com/object_dispatch.h"

#include <mutex>
#include <unordered_map>

#include "platform/com/arguments.h"
#include "platform/com/bridge.h"
#include "platform/com/class_info.h"
#include "platform/com/own_types.h"
#include "platform/com/result.h"
#include "platform/com/unknown.h"
#include "platform/per_thread.h"

namespace platform::com {

using automation::Error;
using automation::Failure;
using automation::Member;
using automation::Ref;
using automation::Value;

namespace {

/// The ids of names: handed out at the first question, the same for all types and threads.
class Names {
 public:
  static Names& all() {
    static Names names;
    return names;
  }
  DISPID id(const std::string& name) {
    if (Member::named(name) == Member("_NewEnum")) return DISPID_NEWENUM;
    const std::lock_guard lock(mutex_);
    const auto [place, is_new] =
        ids_.try_emplace(Member::named(name).id(), static_cast<DISPID>(names_.size() + 1));
    if (is_new) names_.push_back(std::make_unique<std::string>(name));
    return place->second;
  }
  /// Throws Failure(no_such_member) for an id that wasn't handed out.
  Member member(DISPID id) {
    if (id == DISPID_NEWENUM) return "_NewEnum";
    const std::lock_guard lock(mutex_);
    if (id < 1 || static_cast<std::size_t>(id) > names_.size()) throw Failure(Error::no_such_member);
    return Member::named(*names_[static_cast<std::size_t>(id - 1)]);
  }

 private:
  std::mutex mutex_;
  std::vector<std::unique_ptr<std::string>> names_;
  std::unordered_map<std::uint64_t, DISPID> ids_;
};

LookUps& counted() {
  static PerThread<LookUps> counts;
  return counts.get();
}

class ObjectDispatch;

/// The bridges that live. All threads' are in it, since the last reference may be given up by another one.
struct Bridges {
  std::mutex mutex;
  std::unordered_map<const automation::Object*, ObjectDispatch*> by_object;
  /// An interface that comes in is looked for here; it is never asked what it is.
  std::unordered_map<IDispatch*, ObjectDispatch*> by_address;
};

Bridges& bridges() {
  static Bridges all;
  return all;
}

class ObjectDispatch final
    : public Unknown<IDispatch, IProvideClassInfo2, IConnectionPointContainer, ISupportErrorInfo> {
 public:
  explicit ObjectDispatch(const Ref& object)
      : object_(object), type_name_(object->type_name()), type_(own_type(type_name_)) {
    const std::lock_guard lock(bridges().mutex);
    bridges().by_object[object_.get()] = this;
    bridges().by_address[this] = this;
  }
  ~ObjectDispatch() override {
    const std::lock_guard lock(bridges().mutex);
    bridges().by_object.erase(object_.get());
    bridges().by_address.erase(this);
  }

  static ComPtr<IDispatch> of(const Ref& object) {
    {
      const std::lock_guard lock(bridges().mutex);
      const auto known = bridges().by_object.find(object.get());
      if (known != bridges().by_object.end()) return ComPtr<IDispatch>::share(known->second);
    }
    return ComPtr<IDispatch>::adopt(make<ObjectDispatch>(object).detach());
  }
  /// Null for an address that no living bridge of this module has.
  static Ref behind(IDispatch* address) {
    const std::lock_guard lock(bridges().mutex);
    const auto known = bridges().by_address.find(address);
    return known == bridges().by_address.end() ? nullptr : known->second->object_;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = type_.info ? 1 : 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
    *info = nullptr;
    if (index != 0 || !type_.info) return DISP_E_BADINDEX;
    *info = ComPtr(type_.info).detach();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                                   EXCEPINFO* info, UINT*) override {
    // What the caller's variant holds is rubbish, not content.
    if (result) VariantInit(result);
    return guard([&] { invoke(id, flags, params, result); }, info);
  }

  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override {
    *info = ComPtr(type_.class_info).detach();
    return *info ? S_OK : TYPE_E_ELEMENTNOTFOUND;
  }
  HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* guid) override;

  HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override {
    *points = nullptr;
    return E_NOTIMPL;  // there is one, and the class tells it
  }
  HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;

  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override {
    return iid == IID_IDispatch ? S_OK : S_FALSE;
  }

 private:
  void* find(REFIID iid) noexcept override;
  void invoke(DISPID id, WORD flags, DISPPARAMS* params, VARIANT* result);

  Ref object_;
  std::string type_name_;
  OwnType& type_;
  ComPtr<IConnectionPoint> point_;
};

void* ObjectDispatch::find(REFIID iid) noexcept {
  if (iid == IID_IDispatch) return static_cast<IDispatch*>(this);
  if (iid == IID_ISupportErrorInfo) return static_cast<ISupportErrorInfo*>(this);
  if (type_.class_info && (iid == IID_IProvideClassInfo || iid == IID_IProvideClassInfo2)) {
    return static_cast<IProvideClassInfo2*>(this);
  }
  const bool raises = type_.source && object_->events() != nullptr;
  if (raises && iid == IID_IConnectionPointContainer) return static_cast<IConnectionPointContainer*>(this);
  return nullptr;
}

HRESULT ObjectDispatch::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  return guard([&] {
    if (names == nullptr || ids == nullptr || count == 0) throw Failure(Error::invalid_argument);
    std::fill_n(ids, count, DISPID_UNKNOWN);
    if (count > 1) throw Failure(Error::no_such_member);  // arguments have no names here
    const std::string name = win32::utf8(names[0]);
    ++counted()[type_name_ + "." + name];
    ids[0] = Names::all().id(name);
  });
}

void ObjectDispatch::invoke(DISPID id, WORD flags, DISPPARAMS* params, VARIANT* result) {
  const Member member = Names::all().member(id);
  const auto self = ComPtr<ObjectDispatch>::share(this);  // what is called may let go of it
  const bool is_put = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  DISPPARAMS none{};
  IncomingArguments arguments(params ? *params : none,
                              is_put ? IncomingArguments::Of::put : IncomingArguments::Of::call);
  Value given;
  if (is_put) {
    object_->put(member, arguments.args(), arguments.put());
  } else if (flags & DISPATCH_PROPERTYGET) {
    given = object_->get(member, arguments.args());
  } else {
    given = object_->call(member, arguments.args());
  }
  arguments.write_back(type_.records);
  if (result == nullptr) return;
  if (id == DISPID_NEWENUM) {
    V_UNKNOWN(result) = make_enumerator(given).detach();
    V_VT(result) = VT_UNKNOWN;
  } else {
    to_variant(given, type_.records, *result);
  }
}

HRESULT ObjectDispatch::GetGUID(DWORD kind, GUID* guid) {
  *guid = GUID_NULL;
  if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) return E_INVALIDARG;
  if (!type_.source) return E_UNEXPECTED;
  return guard([&] { *guid = guid_of(type_.source.get()); });
}

HRESULT ObjectDispatch::FindConnectionPoint(REFIID iid, IConnectionPoint** point) {
  *point = nullptr;
  return guard([&] {
    if (!point_) point_ = make_connection_point(object_, type_.source);
    IID own{};
    check(point_->GetConnectionInterface(&own));
    if (own != iid) check(CONNECT_E_NOCONNECTION);
    *point = ComPtr(point_).detach();
  });
}

}  // namespace

ComPtr<IDispatch> make_dispatch(const Ref& object) {
  return ObjectDispatch::of(object);
}

Ref object_behind(IDispatch* dispatch) {
  return ObjectDispatch::behind(dispatch);
}

const LookUps& look_ups() noexcept {
  return counted();
}

}  // namespace platform::com
