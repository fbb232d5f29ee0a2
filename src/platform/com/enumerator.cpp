#include <algorithm>

#include "platform/com/convert.h"
#include "platform/com/object_dispatch.h"
#include "platform/com/result.h"
#include "platform/com/unknown.h"

namespace platform::com {

using automation::Array;
using automation::Value;

namespace {

class Enumerator final : public Unknown<IEnumVARIANT> {
 public:
  explicit Enumerator(Array values, std::size_t next = 0) : values_(std::move(values)), next_(next) {}

  HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* items, ULONG* given) override;
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
    const std::size_t step = std::min<std::size_t>(count, values_.size() - next_);
    next_ += step;
    return step == count ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() override {
    next_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) override {
    if (copy == nullptr) return E_POINTER;
    *copy = nullptr;
    return guard([&] { *copy = make<Enumerator>(values_, next_).detach(); });
  }

 private:
  void* find(REFIID iid) noexcept override {
    return iid == IID_IEnumVARIANT ? static_cast<IEnumVARIANT*>(this) : nullptr;
  }

  Array values_;
  std::size_t next_;
};

HRESULT Enumerator::Next(ULONG count, VARIANT* items, ULONG* given) {
  if (items == nullptr || (given == nullptr && count != 1)) return E_POINTER;
  const ULONG step = static_cast<ULONG>(std::min<std::size_t>(count, values_.size() - next_));
  std::vector<Variant> batch(step);
  const HRESULT done = guard([&] {
    RecordTypes none{{}};
    for (ULONG i = 0; i < step; ++i) to_variant(values_[next_ + i], none, batch[i].get());
  });
  if (given) *given = 0;
  if (FAILED(done)) return done;
  for (ULONG i = 0; i < step; ++i) items[i] = batch[i].detach();
  next_ += step;
  if (given) *given = step;
  return step == count ? S_OK : S_FALSE;
}

}  // namespace

ComPtr<IUnknown> make_enumerator(const Value& values) {
  return ComPtr<IUnknown>::adopt(make<Enumerator>(values.to_array()).detach());
}

}  // namespace platform::com
