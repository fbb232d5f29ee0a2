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
constexpr bool is_wide = sizeof(void*) == 8;
constexpr const wchar_t* system = is_wide ? L"win64" : L"win32";
/// Where the classes of the other width are, seen from this one.
constexpr REGSAM other_width = is_wide ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
/// The system's own marshaler for interfaces that a type library describes.
constexpr const wchar_t* type_library_marshaler = L"{00020424-0000-0000-C000-000000000046}";

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

ComPtr<ITypeLib> library() {
  ComPtr<ITypeLib> library;
  UINT place = 0;
  check(platform::com::own_type("Connect").info->GetContainingTypeLib(library.out(), &place));
  return library;
}

GUID library_id() {
  TLIBATTR* attributes = nullptr;
  const ComPtr<ITypeLib> own = library();
  check(own->GetLibAttr(&attributes));
  const GUID guid = attributes->guid;
  own->ReleaseTLibAttr(attributes);
  return guid;
}

std::wstring interface_key(const char* name) {
  return L"Interface\\" + text_of(platform::com::guid_of(platform::com::own_type(name).info.get()));
}

/// The branches below the root of all classes.
struct Branches {
  std::wstring prog_id = wide(connect_class);
  std::wstring class_id = L"CLSID\\" + text_of(connect_class_id());
  std::wstring server = class_id + L"\\InprocServer32";
  std::wstring library = L"TypeLib\\" + text_of(library_id());
  std::wstring version = library + L"\\1.0";
  std::wstring library_file = version + L"\\0\\" + system;
  /// The interface that all add-ins share, and our own.
  std::array<std::pair<const char*, std::wstring>, 2> interfaces{
      {{"IDTExtensibility2", interface_key("IDTExtensibility2")}, {"_Connect", interface_key("_Connect")}}};
};

std::array<Entry, 10> entries_of(const Branches& branches) {
  const std::wstring file = platform::com::own_module_file();
  return {{
      {branches.prog_id, nullptr, description},
      {branches.prog_id + L"\\CLSID", nullptr, text_of(connect_class_id())},
      {branches.class_id, nullptr, description},
      {branches.server, nullptr, file},
      {branches.server, L"ThreadingModel", L"Apartment"},
      {branches.class_id + L"\\ProgID", nullptr, branches.prog_id},
      {branches.class_id + L"\\TypeLib", nullptr, text_of(library_id())},
      {branches.version, nullptr, description},
      {branches.library_file, nullptr, file},
      {branches.version + L"\\FLAGS", nullptr, L"0"},
  }};
}

std::array<Entry, 4> entries_of_interface(const char* name, const std::wstring& key) {
  return {{
      {key, nullptr, wide(name)},
      {key + L"\\ProxyStubClsid32", nullptr, type_library_marshaler},
      {key + L"\\TypeLib", nullptr, text_of(library_id())},
      {key + L"\\TypeLib", L"Version", L"1.0"},
  }};
}

/// The classes of one scope, as one width sees them.
class Classes {
 public:
  explicit Classes(Scope scope, REGSAM width = 0) {
    const HKEY root = scope == Scope::everybody ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
    check(HRESULT_FROM_WIN32(static_cast<DWORD>(RegCreateKeyExW(
        root, L"Software\\Classes", 0, nullptr, 0, KEY_READ | KEY_WRITE | width, nullptr, &key_, nullptr))));
  }
  ~Classes() { RegCloseKey(key_); }
  Classes(const Classes&) = delete;
  Classes& operator=(const Classes&) = delete;

  /// Empty where there is none.
  [[nodiscard]] std::wstring text(const std::wstring& key) const {
    std::array<wchar_t, 1024> text{};
    DWORD size = sizeof text;
    const LSTATUS read = RegGetValueW(key_, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, text.data(), &size);
    return read == ERROR_SUCCESS ? text.data() : L"";
  }
  void enter(const Entry& entry) const {
    const auto size = static_cast<DWORD>((entry.text.size() + 1) * sizeof(wchar_t));
    require(RegSetKeyValueW(key_, entry.key.c_str(), entry.name, REG_SZ, entry.text.c_str(), size));
  }
  void take_out(const std::wstring& branch) const {
    const LSTATUS done = RegDeleteTreeW(key_, branch.c_str());
    if (done != ERROR_FILE_NOT_FOUND) require(done);
  }
  [[nodiscard]] bool has_keys_below(const std::wstring& branch) const {
    HKEY opened = nullptr;
    DWORD keys = 0;
    if (RegOpenKeyExW(key_, branch.c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS) return false;
    RegQueryInfoKeyW(opened, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, nullptr, nullptr, nullptr,
                     nullptr, nullptr);
    RegCloseKey(opened);
    return keys > 0;
  }

 private:
  static void require(LSTATUS done) { check(HRESULT_FROM_WIN32(static_cast<DWORD>(done))); }

  HKEY key_ = nullptr;
};

bool is_own_file(const std::wstring& file) {
  return CompareStringOrdinal(file.c_str(), -1, platform::com::own_module_file().c_str(), -1, TRUE) ==
         CSTR_EQUAL;
}

void enter_all(Scope scope) {
  const Branches branches;
  const Classes classes(scope);
  for (const Entry& entry : entries_of(branches)) classes.enter(entry);
  for (const auto& [name, key] : branches.interfaces) {
    const std::wstring library = classes.text(key + L"\\TypeLib");
    if (!library.empty() && library != text_of(library_id()))
      continue;  // another one's that describes it as well
    for (const Entry& entry : entries_of_interface(name, key)) classes.enter(entry);
  }
}

/// A class that names another file is that one's: a newer version in a folder of its own.
void take_out_class(const Classes& classes, Scope scope, const Branches& branches) {
  const std::wstring server = classes.text(branches.server);
  if (!server.empty() && !is_own_file(server)) return;
  classes.take_out(branches.class_id);
  for (const auto& [name, key] : branches.interfaces) {
    if (classes.text(key + L"\\TypeLib") == text_of(library_id())) classes.take_out(key);
  }
  // Both widths have the name of the class in common.
  if (Classes(scope, other_width).text(branches.server).empty()) classes.take_out(branches.prog_id);
}

/// Both widths have the type library's branch in common, with an entry each for its file.
void take_out_library(const Classes& classes, const Branches& branches) {
  const std::wstring file = classes.text(branches.library_file);
  if (!file.empty() && !is_own_file(file)) return;
  classes.take_out(branches.library_file);
  if (classes.has_keys_below(branches.version + L"\\0")) return;
  classes.take_out(branches.version);
  if (!classes.has_keys_below(branches.library)) classes.take_out(branches.library);
}

}  // namespace

CLSID connect_class_id() {
  return platform::com::guid_of(platform::com::own_type("Connect").info.get());
}

HRESULT register_component(Scope scope) noexcept {
  const HRESULT done = guard([&] { enter_all(scope); });
  if (FAILED(done)) unregister_component(scope);
  return FAILED(done) ? SELFREG_E_CLASS : S_OK;
}

HRESULT unregister_component(Scope scope) noexcept {
  const HRESULT done = guard([&] {
    const Branches branches;
    const Classes classes(scope);
    take_out_class(classes, scope, branches);
    take_out_library(classes, branches);
  });
  return FAILED(done) ? SELFREG_E_CLASS : S_OK;
}

}  // namespace component
