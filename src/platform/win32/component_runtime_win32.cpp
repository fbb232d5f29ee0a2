#include <filesystem>

#include "platform/com/bridge.h"
#include "platform/com/class_factory.h"
#include "platform/com/class_info.h"
#include "platform/com/extension_object.h"
#include "platform/com/module.h"
#include "platform/com/result.h"
#include "platform/component_runtime.h"
#include "platform/per_thread.h"
#include "platform/win32/path_win32.h"
#include "platform/win32/text_win32.h"

namespace platform {

using automation::Error;
using automation::Failure;
using automation::Ref;
using com::ComPtr;

namespace {

std::filesystem::path own_file() {
  return com::own_module_file();
}

/// The host's one thread lives in an apartment from the first question on.
void enter_apartment() {
  struct Apartment {
    Apartment() : entered(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
    ~Apartment() {
      if (entered) CoUninitialize();
    }
    bool entered;
  };
  thread_local const Apartment apartment;
  static_cast<void>(apartment);
}

ClassMaker& offered() {
  static PerThread<ClassMaker> makers;
  return makers.get();
}

Ref make_offered(std::string_view class_name) {
  // a copy: the maker may take the offer back
  Ref made;
  if (const ClassMaker maker = offered()) made = maker(class_name);
  if (!made) throw Failure(Error::cannot_create_object);
  return made;
}

}  // namespace

std::string component_folder() {
  return win32::without_separator(win32::utf8(own_file().parent_path().native()));
}

std::string component_name() {
  return win32::utf8(own_file().stem().native());
}

void offer_classes(ClassMaker maker) {
  enter_apartment();
  offered() = std::move(maker);
}

Ref create_object(std::string_view class_name) {
  if (offered()) return make_offered(class_name);
  CLSID class_id{};
  ComPtr<IDispatch> made;
  if (FAILED(CLSIDFromProgID(win32::wide(class_name).c_str(), &class_id)))
    throw Failure(Error::cannot_create_object);
  com::check(CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IID_IDispatch,
                              made.out_void()));
  return com::import_object(made.get());
}

HRESULT com::give_offered_factory(REFCLSID class_id, REFIID iid, void** out) noexcept {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  LPOLESTR text = nullptr;
  if (FAILED(ProgIDFromCLSID(class_id, &text))) return CLASS_E_CLASSNOTAVAILABLE;
  const HRESULT given = guard([&] {
    check(give_factory(
        [name = win32::utf8(text)] {
          return ComPtr<IUnknown>::adopt(make_dispatch(make_offered(name)).detach());
        },
        iid, out));
  });
  CoTaskMemFree(text);
  return given;
}

namespace {

using CanUnloadNow = HRESULT STDAPICALLTYPE();

template <class Function>
Function* function(HMODULE module, const char* name) {
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

/// The class of that name in a component file's own type library: what stands behind the last ".".
CLSID class_in(const std::wstring& file, std::string_view class_name) {
  ComPtr<ITypeLib> library;
  ComPtr<ITypeInfo> type;
  MEMBERID member = 0;
  USHORT count = 1;
  std::wstring name = win32::wide(class_name.substr(class_name.rfind('.') + 1));
  com::check(LoadTypeLibEx(file.c_str(), REGKIND_NONE, library.out()));
  com::check(library->FindName(name.data(), 0, type.out(), &member, &count));
  if (count == 0) throw Failure(Error::cannot_create_object);
  return com::guid_of(type.get());
}

/// Why the system can't load a library, by its code.
Failure not_loaded(DWORD code) {
  if (code != ERROR_BAD_EXE_FORMAT) return win32::failure_of(code);
  return Failure("it isn't a DLL of " + std::to_string(8 * sizeof(void*)) + " bits, as this program is");
}

class LoadedComponent : public Component {
 public:
  explicit LoadedComponent(const std::string& file) {
    // absolute, so that the component knows its folder whatever becomes the current one
    std::error_code ignored;
    file_ = std::filesystem::absolute(win32::wide(file), ignored).native();
    library_ = LoadLibraryExW(file_.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (library_ == nullptr) throw not_loaded(GetLastError());
    get_class_object_ = function<decltype(DllGetClassObject)>(library_, "DllGetClassObject");
    can_unload_now_ = function<CanUnloadNow>(library_, "DllCanUnloadNow");
    if (get_class_object_ && can_unload_now_) return;
    FreeLibrary(library_);
    throw Failure(file + " doesn't export " + (get_class_object_ ? "DllCanUnloadNow" : "DllGetClassObject"));
  }
  ~LoadedComponent() override {
    // code that objects are left of has to stay
    if (can_unload_now_() == S_OK) FreeLibrary(library_);
  }
  LoadedComponent(const LoadedComponent&) = delete;
  LoadedComponent& operator=(const LoadedComponent&) = delete;

  Ref create(std::string_view class_name) override {
    ComPtr<IClassFactory> factory;
    ComPtr<IUnknown> made;
    com::check(get_class_object_(class_in(file_, class_name), IID_IClassFactory, factory.out_void()));
    com::check(factory->CreateInstance(nullptr, IID_IUnknown, made.out_void()));
    return com::make_extension_object(made);
  }

  bool can_unload() override { return can_unload_now_() == S_OK; }

 private:
  std::wstring file_;
  HMODULE library_ = nullptr;
  decltype(DllGetClassObject)* get_class_object_ = nullptr;
  CanUnloadNow* can_unload_now_ = nullptr;
};

/// A component that the system loads.
class RegisteredComponent : public Component {
 public:
  Ref create(std::string_view class_name) override {
    CLSID class_id{};
    if (FAILED(CLSIDFromProgID(win32::wide(class_name).c_str(), &class_id))) {
      const std::string name(class_name);
      throw Failure(name + " isn't registered; regsvr32 " + name.substr(0, name.find('.')) +
                    ".dll registers it");
    }
    ComPtr<IUnknown> made;
    const HRESULT done =
        CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, made.out_void());
    if (done == HRESULT_FROM_WIN32(ERROR_BAD_EXE_FORMAT)) throw not_loaded(ERROR_BAD_EXE_FORMAT);
    com::check(done);
    // The class's code tells where it is from.
    const void* const code = **reinterpret_cast<void***>(made.get());
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<const wchar_t*>(code), &module_);
    return com::make_extension_object(made);
  }

  bool can_unload() override {
    auto* const can_unload_now = module_ ? function<CanUnloadNow>(module_, "DllCanUnloadNow") : nullptr;
    return can_unload_now == nullptr || can_unload_now() == S_OK;
  }

 private:
  HMODULE module_ = nullptr;
};

}  // namespace

std::unique_ptr<Component> load_component(const std::string& file) {
  enter_apartment();
  if (file.empty()) return std::make_unique<RegisteredComponent>();
  return std::make_unique<LoadedComponent>(file);
}

}  // namespace platform
