#include "platform/com/event_source.h"

#include <map>

#include "platform/com/arguments.h"
#include "platform/com/class_info.h"
#include "platform/com/result.h"
#include "platform/com/unknown.h"

namespace platform::com {

using automation::Binding;
using automation::Error;
using automation::EventHandler;
using automation::Failure;
using automation::Member;

namespace {

/// What a source's type information says.
struct EventTable {
  IID iid{};
  std::map<DISPID, std::string> names;
  ComPtr<ITypeInfo> info;
};

std::shared_ptr<EventTable> table_of(ComPtr<ITypeInfo> info) {
  auto table = std::make_shared<EventTable>();
  table->iid = guid_of(info.get());
  for (UINT i = 0; i < functions_of(info.get()); ++i) {
    FUNCDESC* function = nullptr;
    if (FAILED(info->GetFuncDesc(i, &function))) continue;  // some count the members of IDispatch, too
    const DISPID id = function->memid;
    info->ReleaseFuncDesc(function);
    Bstr name;
    UINT count = 0;
    if (SUCCEEDED(info->GetNames(id, name.out(), 1, &count)) && count == 1) table->names[id] = name.utf8();
  }
  table->info = std::move(info);
  return table;
}

/// The source of an object that doesn't tell its class: its first connection point's, by the library of its
/// type.
ComPtr<ITypeInfo> first_source(IDispatch* object, IConnectionPointContainer* container) {
  ComPtr<IEnumConnectionPoints> points;
  ComPtr<IConnectionPoint> point;
  ComPtr<ITypeInfo> type, source;
  ComPtr<ITypeLib> library;
  UINT place = 0;
  IID iid{};
  ULONG count = 0;
  if (FAILED(container->EnumConnectionPoints(points.out())) || points->Next(1, point.out(), &count) != S_OK ||
      FAILED(point->GetConnectionInterface(&iid)) || FAILED(object->GetTypeInfo(0, 0, type.out())) ||
      FAILED(type->GetContainingTypeLib(library.out(), &place)) ||
      FAILED(library->GetTypeInfoOfGuid(iid, source.out()))) {
    return {};
  }
  return source;
}

ComPtr<ITypeInfo> source_of(IDispatch* object, IConnectionPointContainer* container) {
  if (const ComPtr<ITypeInfo> class_info = told_class_of(object)) {
    if (auto source = default_source(class_info.get())) return source;
  }
  return first_source(object, container);
}

/// Hears a source for as long as it has a handler.
class EventSink final : public Unknown<IDispatch> {
 public:
  EventSink(std::shared_ptr<EventTable> table, EventHandler handler)
      : table_(std::move(table)),
        records_(table_->info),
        handler_(std::make_shared<EventHandler>(std::move(handler))) {}

  void end() noexcept { handler_.reset(); }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
    *info = nullptr;
    return DISP_E_BADINDEX;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
    return table_->info->GetIDsOfNames(names, count, ids);
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT* result,
                                   EXCEPINFO* info, UINT*) override {
    if (result) VariantInit(result);
    return guard([&] { hear(id, params); }, info);
  }

 private:
  void* find(REFIID iid) noexcept override {
    return iid == IID_IDispatch || iid == table_->iid ? static_cast<IDispatch*>(this) : nullptr;
  }
  void hear(DISPID id, DISPPARAMS* params);

  std::shared_ptr<EventTable> table_;
  RecordTypes records_;
  std::shared_ptr<EventHandler> handler_;
};

void EventSink::hear(DISPID id, DISPPARAMS* params) {
  const auto handler = handler_;  // it may end while it is called
  const auto name = table_->names.find(id);
  if (!handler || name == table_->names.end()) return;
  const auto self = ComPtr<EventSink>::share(this);
  DISPPARAMS none{};
  IncomingArguments arguments(params ? *params : none, IncomingArguments::Of::event);
  (*handler)(Member::named(name->second), arguments.args());
  arguments.write_back(records_);
}

}  // namespace

Binding bind_events(IDispatch* object, EventHandler handler) {
  const auto container = ComPtr<IDispatch>::share(object).as<IConnectionPointContainer>();
  if (!container) throw Failure(Error::no_such_member);
  ComPtr<ITypeInfo> source = source_of(object, container.get());
  if (!source) throw Failure(Error::no_such_member);
  auto table = table_of(std::move(source));
  ComPtr<IConnectionPoint> point;
  check(container->FindConnectionPoint(table->iid, point.out()));
  const auto sink = make<EventSink>(std::move(table), std::move(handler));
  DWORD cookie = 0;
  check(point->Advise(sink.get(), &cookie));
  return Binding([point, sink, cookie] {
    sink->end();
    point->Unadvise(cookie);
  });
}

}  // namespace platform::com
