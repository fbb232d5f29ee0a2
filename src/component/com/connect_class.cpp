#include "component/com/connect_class.h"

#include "component/connect_object.h"
#include "platform/com/bridge.h"
#include "platform/com/extensibility.h"
#include "platform/com/own_types.h"
#include "platform/com/result.h"
#include "platform/com/unknown.h"

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"  // as the system's own interfaces

/// The public operations, in the order of the type library.
struct _Connect : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE RefreshQuorvexShapes(IDispatch** ActDocument, LONG* Count) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetAppTextFile(BSTR* File) = 0;
  virtual HRESULT STDMETHODCALLTYPE PI(DOUBLE* Value) = 0;
};
__CRT_UUID_DECL(_Connect, 0x19CFE190, 0x2735, 0x424F, 0x81, 0x51, 0xE3, 0xAF, 0x66, 0x72, 0xDC, 0x01)

namespace component {
namespace {

using automation::Member;
using automation::Ref;
using automation::Value;
using platform::com::Bstr;
using platform::com::ComPtr;
using platform::com::guard;
using platform::com::import_object;
using platform::com::Unknown;

/// A dual interface as its table of functions.
ComPtr<ITypeInfo> table_side(ITypeInfo* info) {
  HREFTYPE reference = 0;
  ComPtr<ITypeInfo> table;
  platform::com::check(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference));
  platform::com::check(info->GetRefTypeInfo(reference, table.out()));
  return table;
}

/// The late-bound side of a dual interface: the type library knows its members, and calls them.
template <class Interface>
class Dual : public Interface {
 public:
  explicit Dual(const char* name) : info_(platform::com::own_type(name).info) {
    if (!info_) throw automation::Failure(automation::Error::internal_error);
    table_ = table_side(info_.get());
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    if (count == nullptr) return E_POINTER;
    *count = 1;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
    if (info == nullptr) return E_POINTER;
    *info = index == 0 ? ComPtr(info_).detach() : nullptr;
    return *info ? S_OK : DISP_E_BADINDEX;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
    return info_->GetIDsOfNames(names, count, ids);
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                                   EXCEPINFO* info, UINT* bad_argument) override {
    SetErrorInfo(0, nullptr);  // what the member leaves there is its own
    return table_->Invoke(static_cast<Interface*>(this), id, flags, params, result, info, bad_argument);
  }

 private:
  ComPtr<ITypeInfo> info_;
  ComPtr<ITypeInfo> table_;
};

struct PublicSide : Dual<_Connect> {
  PublicSide() : Dual("_Connect") {}
};
struct HostSide : Dual<IDTExtensibility2> {
  HostSide() : Dual("IDTExtensibility2") {}
};

class ConnectClass final : public Unknown<PublicSide, HostSide, ISupportErrorInfo> {
 public:
  HRESULT STDMETHODCALLTYPE OnConnection(IDispatch* application, LONG /*mode*/, IDispatch* /*add_in*/,
                                         SAFEARRAY** /*custom*/) override {
    return guard([&] { call("OnConnection", Value(import_object(application))); });
  }
  HRESULT STDMETHODCALLTYPE OnDisconnection(LONG /*mode*/, SAFEARRAY** /*custom*/) override {
    return guard([&] { call("OnDisconnection"); });
  }
  HRESULT STDMETHODCALLTYPE OnAddInsUpdate(SAFEARRAY** /*custom*/) override {
    return guard([&] { call("OnAddInsUpdate"); });
  }
  HRESULT STDMETHODCALLTYPE OnStartupComplete(SAFEARRAY** /*custom*/) override {
    return guard([&] { call("OnStartupComplete"); });
  }
  HRESULT STDMETHODCALLTYPE OnBeginShutdown(SAFEARRAY** /*custom*/) override {
    return guard([&] { call("OnBeginShutdown"); });
  }

  HRESULT STDMETHODCALLTYPE RefreshQuorvexShapes(IDispatch** document, LONG* count) override {
    if (document == nullptr || count == nullptr) return E_POINTER;
    *count = 0;
    return guard([&] { *count = call("RefreshQuorvexShapes", Value(import_object(*document))).to_int32(); });
  }
  HRESULT STDMETHODCALLTYPE GetAppTextFile(BSTR* file) override {
    if (file == nullptr) return E_POINTER;
    *file = nullptr;
    return guard([&] { *file = Bstr(call("GetAppTextFile").to_text()).detach(); });
  }
  HRESULT STDMETHODCALLTYPE PI(DOUBLE* value) override {
    if (value == nullptr) return E_POINTER;
    *value = 0;
    return guard([&] { *value = call("PI").to_double(); });
  }

  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override {
    return iid == __uuidof(_Connect) || iid == __uuidof(IDTExtensibility2) ? S_OK : S_FALSE;
  }

 private:
  void* find(REFIID iid) noexcept override {
    if (iid == IID_IDispatch || iid == __uuidof(_Connect)) return static_cast<_Connect*>(this);
    if (iid == __uuidof(IDTExtensibility2)) return static_cast<IDTExtensibility2*>(this);
    if (iid == IID_ISupportErrorInfo) return static_cast<ISupportErrorInfo*>(this);
    return nullptr;
  }
  template <class... Arguments>
  Value call(Member member, Arguments... arguments) {
    const auto self = ComPtr<ConnectClass>::share(this);  // the host may let go meanwhile
    std::array<Value, sizeof...(Arguments)> args{std::move(arguments)...};
    return connect_->call(member, args);
  }

  Ref connect_ = make_connect_object();
};

#pragma GCC diagnostic pop

}  // namespace

ComPtr<IUnknown> make_connect_class() {
  return ComPtr<IUnknown>::adopt(static_cast<_Connect*>(platform::com::make<ConnectClass>().detach()));
}

}  // namespace component
