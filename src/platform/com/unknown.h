#pragma once

#include <atomic>

#include "platform/com/owners.h"

namespace platform::com {

/// The objects of our classes that others hold or may hold, and the locks on the module: while there are any,
/// it has to stay loaded.
inline std::atomic<long> objects_alive{0};

// The system's interfaces have no virtual destructor; nothing is deleted through them.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// The counting of a class that implements interfaces; the first one stands for the object's identity.
/// Objects are made with one reference, see `make`.
template <class First, class... Others>
class Unknown : public First, public Others... {
 public:
  Unknown(const Unknown&) = delete;
  Unknown& operator=(const Unknown&) = delete;

  ULONG STDMETHODCALLTYPE AddRef() noexcept override { return static_cast<ULONG>(++references_); }
  ULONG STDMETHODCALLTYPE Release() noexcept override {
    const long left = --references_;
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) noexcept override {
    if (out == nullptr) return E_POINTER;
    *out = iid == IID_IUnknown ? static_cast<First*>(this) : find(iid);
    if (*out == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }

 protected:
  Unknown() { ++objects_alive; }
  virtual ~Unknown() { --objects_alive; }

  /// The interface of that identifier, or null.
  virtual void* find(REFIID iid) noexcept = 0;

 private:
  std::atomic<long> references_{1};
};

#pragma GCC diagnostic pop

template <class Class, class... Arguments>
ComPtr<Class> make(Arguments&&... arguments) {
  return ComPtr<Class>::adopt(new Class(std::forward<Arguments>(arguments)...));
}

}  // namespace platform::com
