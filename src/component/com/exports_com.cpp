// What a host finds in the component's file. These forward to the component and throw nothing.

#include "component/com/connect_class.h"
#include "component/com/registration.h"
#include "component/connect_object.h"
#include "platform/com/class_factory.h"
#include "platform/com/unknown.h"

using component::Scope;

namespace __gnu_cxx {
void __freeres();  // of the compiler's runtime: gives back the 71 KB that it keeps for throwing without
                   // memory
}

/// A host may load and unload the component many times: nothing big stays behind.
BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* process_ends) {
  if (reason == DLL_PROCESS_DETACH && process_ends == nullptr) __gnu_cxx::__freeres();
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID class_id, REFIID iid, void** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  if (class_id != component::connect_class_id()) return CLASS_E_CLASSNOTAVAILABLE;
  return platform::com::give_factory(component::make_connect_class, iid, out);
}

STDAPI DllCanUnloadNow() {
  return platform::com::objects_alive == 0 ? S_OK : S_FALSE;
}

STDAPI DllRegisterServer() {
  return component::register_component(Scope::everybody);
}

STDAPI DllUnregisterServer() {
  return component::unregister_component(Scope::everybody);
}

/// `regsvr32 /n /i:user` registers for the current user, which takes no administrator.
STDAPI DllInstall(BOOL install, PCWSTR words) {
  const bool for_user = words != nullptr && lstrcmpiW(words, L"user") == 0;
  if (!for_user && words != nullptr && *words != L'\0') return E_INVALIDARG;
  const Scope scope = for_user ? Scope::user : Scope::everybody;
  return install ? component::register_component(scope) : component::unregister_component(scope);
}
