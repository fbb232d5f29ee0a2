#include "platform/com/class_factory.h"

#include "platform/com/result.h"
#include "platform/com/unknown.h"

namespace platform::com {
namespace {

class Factory final : public Unknown<IClassFactory> {
 public:
  explicit Factory(std::function<ComPtr<IUnknown>()> maker) : maker_(std::move(maker)) {}

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** out) override {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    HRESULT found = S_OK;
    const HRESULT made = guard([&] { found = maker_()->QueryInterface(iid, out); });
    return FAILED(made) ? made : found;
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
    objects_alive += lock ? 1 : -1;
    return S_OK;
  }

 private:
  void* find(REFIID iid) noexcept override {
    return iid == IID_IClassFactory ? static_cast<IClassFactory*>(this) : nullptr;
  }

  std::function<ComPtr<IUnknown>()> maker_;
};

}  // namespace

HRESULT give_factory(std::function<ComPtr<IUnknown>()> maker, REFIID iid, void** out) noexcept {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  HRESULT found = S_OK;
  const HRESULT made = guard([&] { found = make<Factory>(std::move(maker))->QueryInterface(iid, out); });
  return FAILED(made) ? made : found;
}

}  // namespace platform::com
