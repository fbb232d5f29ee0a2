#include "component/com/registration.h"

#include <array>

#include "component/connect_object.h"
#include "platform/com/class_info.h"
#include "platform/com/module.h"
#include "platform/com/own_types.h"
#include "platform/com/result.h"

namespace component {

using platform::com::check;
using platform::com::ComPtr;
using platform::com::guard;
using platform::win32::wide;

namespace {

constexpr const wchar_t* description = L"Quorvex Esprit Schnittstelle";
constexpr const wchar_t* system = sizeof(void*) == 8 ? L"win64" : L"win32";

struct Entry {
  std::wstring key;
  const wchar_t* name;
  std::wstring text;
};

std::wstring text_of(REFGUID guid) {
  std::array<wchar_t, 40> text{};
  StringFromGUID2(guid, text.data(), static_cast<int>(text.size()));
  return text.data();
}

GUID library_id() {
  ComPtr<ITypeLib> library;
  UINT place = 0;
  check(platform::com::own_type("Connect").info->GetContainingTypeLib(library.out(), &place));
  TLIBATTR* attributes = nullptr;
  check(library->GetLibAttr(&attributes));
  const GUID guid = attributes->guid;
  library->ReleaseTLibAttr(attributes);
  return guid;
}

/// The branches that belong to the component alone, below the root of all classes.
struct Branches {
  std::wstring prog_id = wide(connect_class);
  std::wstring class_id = L"CLSID\\" + text_of(connect_class_id());
  std::wstring library = L"TypeLib\\" + text_of(library_id());
};

std::array<Entry, 10> entries_of(const Branches& branches) {
  const std::wstring file = platform::com::own_module_file();
  const std::wstring version = branches.library + L"\\1.0";
  return {{
      {branches.prog_id, nullptr, description},
      {branches.prog_id + L"\\CLSID", nullptr, text_of(connect_class_id())},
      {branches.class_id, nullptr, description},
      {branches.class_id + L"\\InprocServer32", nullptr, file},
      {branches.class_id + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
      {branches.class_id + L"\\ProgID", nullptr, branches.prog_id},
      {branches.class_id + L"\\TypeLib", nullptr, text_of(library_id())},
      {version, nullptr, description},
      {version + L"\\0\\" + system, nullptr, file},
      {version + L"\\FLAGS", nullptr, L"0"},
  }};
}

HKEY root_of(Scope scope) {
  return scope == Scope::everybody ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

std::wstring below_root(const std::wstring& key) {
  return L"Software\\Classes\\" + key;
}

void enter(HKEY root, const Entry& entry) {
  const auto size = static_cast<DWORD>((entry.text.size() + 1) * sizeof(wchar_t));
  check(HRESULT_FROM_WIN32(static_cast<DWORD>(
      RegSetKeyValueW(root, below_root(entry.key).c_str(), entry.name, REG_SZ, entry.text.c_str(), size))));
}

void take_out(HKEY root, const std::wstring& branch) {
  const LSTATUS done = RegDeleteTreeW(root, below_root(branch).c_str());
  if (done != ERROR_FILE_NOT_FOUND) check(HRESULT_FROM_WIN32(static_cast<DWORD>(done)));
}

}  // namespace

CLSID connect_class_id() {
  return platform::com::guid_of(platform::com::own_type("Connect").info.get());
}

HRESULT register_component(Scope scope) noexcept {
  const HRESULT done = guard([&] {
    for (const Entry& entry : entries_of(Branches())) enter(root_of(scope), entry);
  });
  if (FAILED(done)) unregister_component(scope);
  return FAILED(done) ? SELFREG_E_CLASS : S_OK;
}

HRESULT unregister_component(Scope scope) noexcept {
  const HRESULT done = guard([&] {
    const Branches branches;
    for (const std::wstring& branch : {branches.prog_id, branches.class_id, branches.library}) {
      take_out(root_of(scope), branch);
    }
  });
  return FAILED(done) ? SELFREG_E_CLASS : S_OK;
}

}  // namespace component
