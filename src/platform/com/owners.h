#pragma once

#include <windows.h>
// The system's headers build on the one above.
#include <ocidl.h>
#include <oleauto.h>
#include <olectl.h>

#include <string>
#include <string_view>
#include <utility>

#include "platform/win32/text_win32.h"

/// The owners of what the component runtime hands out. Nothing else in the sources releases such a thing.
namespace platform::com {

/// A counted reference to an interface.
template <class T>
class ComPtr {
 public:
  ComPtr() = default;
  ComPtr(const ComPtr& other) : pointer_(other.pointer_) {
    if (pointer_) pointer_->AddRef();
  }
  ComPtr(ComPtr&& other) noexcept : pointer_(other.detach()) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~ComPtr() {
    if (pointer_) pointer_->Release();
  }

  /// Takes over the caller's reference.
  static ComPtr adopt(T* pointer) {
    ComPtr result;
    result.pointer_ = pointer;
    return result;
  }
  /// Adds a reference of its own.
  static ComPtr share(T* pointer) {
    if (pointer) pointer->AddRef();
    return adopt(pointer);
  }

  [[nodiscard]] T* get() const noexcept { return pointer_; }
  T* operator->() const noexcept { return pointer_; }
  explicit operator bool() const noexcept { return pointer_ != nullptr; }
  /// Hands the reference to the caller.
  T* detach() noexcept { return std::exchange(pointer_, nullptr); }
  /// For a function that gives a reference; what was held is given up first.
  T** out() {
    *this = {};
    return &pointer_;
  }
  void** out_void() { return reinterpret_cast<void**>(out()); }

  /// The same object by another interface; null where it has none such.
  template <class U>
  [[nodiscard]] ComPtr<U> as() const {
    ComPtr<U> other;
    if (pointer_ && FAILED(pointer_->QueryInterface(__uuidof(U), other.out_void()))) other.detach();
    return other;
  }

 private:
  T* pointer_ = nullptr;
};

/// A text of the component runtime, UTF-16.
class Bstr {
 public:
  Bstr() = default;
  explicit Bstr(std::string_view utf8) {
    const std::wstring text = win32::wide(utf8);
    text_ = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  }
  ~Bstr() { SysFreeString(text_); }
  Bstr(Bstr&& other) noexcept : text_(other.detach()) {}
  Bstr& operator=(Bstr&& other) noexcept {
    std::swap(text_, other.text_);
    return *this;
  }
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;

  [[nodiscard]] BSTR get() const noexcept { return text_; }
  BSTR detach() noexcept { return std::exchange(text_, nullptr); }
  BSTR* out() {
    *this = {};
    return &text_;
  }
  [[nodiscard]] std::string utf8() const { return utf8_of(text_); }

  /// The text of a BSTR that belongs to somebody else; null is an empty one.
  static std::string utf8_of(BSTR text) { return text ? win32::utf8({text, SysStringLen(text)}) : ""; }

 private:
  BSTR text_ = nullptr;
};

/// A variant with what it holds.
class Variant {
 public:
  Variant() noexcept { VariantInit(&variant_); }
  ~Variant() { clear(); }
  Variant(Variant&& other) noexcept : variant_(other.detach()) {}
  Variant& operator=(Variant&& other) noexcept {
    std::swap(variant_, other.variant_);
    return *this;
  }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;

  [[nodiscard]] VARIANT& get() noexcept { return variant_; }
  [[nodiscard]] const VARIANT& get() const noexcept { return variant_; }
  /// Hands the content to the caller.
  VARIANT detach() noexcept {
    const VARIANT content = variant_;
    VariantInit(&variant_);
    return content;
  }
  VARIANT* out() noexcept {
    clear();
    return &variant_;
  }

 private:
  void clear() noexcept {
    // The system's function clears a record, but leaves its memory to whoever made it.
    if (V_VT(&variant_) == VT_RECORD && V_RECORDINFO(&variant_) != nullptr) {
      const auto info = ComPtr<IRecordInfo>::adopt(V_RECORDINFO(&variant_));
      if (V_RECORD(&variant_) != nullptr) info->RecordDestroy(V_RECORD(&variant_));
      VariantInit(&variant_);
      return;
    }
    VariantClear(&variant_);
  }

  VARIANT variant_;
};

/// An array of the component runtime.
class SafeArray {
 public:
  explicit SafeArray(SAFEARRAY* array = nullptr) noexcept : array_(array) {}
  ~SafeArray() {
    if (array_) SafeArrayDestroy(array_);
  }
  SafeArray(const SafeArray&) = delete;
  SafeArray& operator=(const SafeArray&) = delete;

  [[nodiscard]] SAFEARRAY*& get() noexcept { return array_; }
  SAFEARRAY* detach() noexcept { return std::exchange(array_, nullptr); }

 private:
  SAFEARRAY* array_;
};

/// An array's elements in place, for as long as this lives; null where the array refuses.
class ArrayAccess {
 public:
  explicit ArrayAccess(SAFEARRAY* array) noexcept : array_(array) {
    if (FAILED(SafeArrayAccessData(array_, &data_))) data_ = nullptr;
  }
  ~ArrayAccess() {
    if (data_) SafeArrayUnaccessData(array_);
  }
  ArrayAccess(const ArrayAccess&) = delete;
  ArrayAccess& operator=(const ArrayAccess&) = delete;

  [[nodiscard]] void* data() const noexcept { return data_; }

 private:
  SAFEARRAY* array_;
  void* data_ = nullptr;
};

}  // namespace platform::com
