
#include <map>

#include "platform/com/arguments.h"
#include "platform/com/bridge.h"
#include "platform/com/class_info.h"
#include "platform/com/convert.h"
#include "platform/com/object_dispatch.h"
#include "platform/com/result.h"
#include "platform/com/unknown.h"

namespace platform::com {

using automation::Args;
using automation::Binding;
using automation::Member;
using automation::Ref;
using automation::Value;

namespace {

/// The ids under which a source raises its events.
struct Source {
  explicit Source(ComPtr<ITypeInfo> type) : info(std::move(type)), iid(guid_of(info.get())), records(info) {}

  /// DISPID_UNKNOWN for a name that the source doesn't have.
  DISPID id(Member event) {
    const auto [place, is_new] = ids.try_emplace(event.id(), DISPID_UNKNOWN);
    if (is_new) {
      std::wstring name = win32::wide(event.name());
      wchar_t* text = name.data();
      if (FAILED(info->GetIDsOfNames(&text, 1, &place->second))) place->second = DISPID_UNKNOWN;
    }
    return place->second;
  }

  ComPtr<ITypeInfo> info;
  IID iid;
  RecordTypes records;
  std::map<std::uint64_t, DISPID> ids;
};

void raise(Source& source, IDispatch* sink, Member event, Args args) {
  const DISPID id = source.id(event);
  if (id == DISPID_UNKNOWN) return;
  OutgoingArguments outgoing(args, nullptr, source.records);
  Variant ignored;
  EXCEPINFO info{};
  check_invoke(sink->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, outgoing.get(), ignored.out(), &info, nullptr),
               info);
  outgoing.read_back(args);
}

class ConnectionPoint final : public Unknown<IConnectionPoint> {
 public:
  ConnectionPoint(Ref object, ComPtr<ITypeInfo> source)
      : object_(std::move(object)), source_(std::make_shared<Source>(std::move(source))) {}

  HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override {
    if (iid == nullptr) return E_POINTER;
    *iid = source_->iid;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer** container) override {
    if (container == nullptr) return E_POINTER;
    return guard([&] { *container = make_dispatch(object_).as<IConnectionPointContainer>().detach(); });
  }
  HRESULT STDMETHODCALLTYPE Advise(IUnknown* unknown, DWORD* cookie) override;
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override {
    return sinks_.erase(cookie) == 1 ? S_OK : CONNECT_E_NOCONNECTION;
  }
  HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) override {
    if (connections == nullptr) return E_POINTER;
    *connections = nullptr;
    return E_NOTIMPL;
  }

 private:
  void* find(REFIID iid) noexcept override {
    return iid == IID_IConnectionPoint ? static_cast<IConnectionPoint*>(this) : nullptr;
  }

  Ref object_;
  std::shared_ptr<Source> source_;
  std::map<DWORD, Binding> sinks_;
  DWORD last_cookie_ = 0;
};

HRESULT ConnectionPoint::Advise(IUnknown* unknown, DWORD* cookie) {
  if (unknown == nullptr || cookie == nullptr) return E_POINTER;
  *cookie = 0;
  ComPtr<IDispatch> sink;
  if (FAILED(unknown->QueryInterface(source_->iid, sink.out_void()))) {
    sink.detach();
    sink = ComPtr<IUnknown>::share(unknown).as<IDispatch>();
  }
  if (!sink) return CONNECT_E_CANNOTCONNECT;
  return guard([&] {
    Binding binding = object_->events()->bind(
        [source = source_, sink](Member event, Args args) { raise(*source, sink.get(), event, args); });
    sinks_.emplace(++last_cookie_, std::move(binding));
    *cookie = last_cookie_;
  });
}

}  // namespace

ComPtr<IConnectionPoint> make_connection_point(const Ref& object, ComPtr<ITypeInfo> source) {
  return ComPtr<IConnectionPoint>::adopt(make<ConnectionPoint>(object, std::move(source)).detach());
}

}  // namespace platform::com
