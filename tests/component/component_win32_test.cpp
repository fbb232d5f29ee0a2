// The component's file as a host of the system meets it: registered, driven, and let go a thousand times.

#include <gtest/gtest.h>

#include <filesystem>

#include "deskhost/model/application.h"
#include "deskhost/session/session.h"
#include "platform/com/bridge.h"
#include "platform/com/extensibility.h"
#include "platform/com/result.h"
#include "platform/com/unknown.h"
#include "platform/component_runtime.h"

namespace component {
namespace {

using automation::Failure;
using automation::Member;
using automation::Value;
using deskhost::Session;
using deskhost::SessionOptions;
using platform::com::Bstr;
using platform::com::ComPtr;
using platform::com::objects_alive;

constexpr const wchar_t* prog_id = L"QVEsprit.Connect";

/// The component's file, loaded for as long as the test runs.
class File {
 public:
  File() : module_(LoadLibraryW(std::filesystem::path(COMPONENT).c_str())) {}
  ~File() { FreeLibrary(module_); }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  template <class Function>
  Function* function(const char* name) const {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
  }
  HRESULT install(BOOL in, const wchar_t* words) const {
    return function<HRESULT STDAPICALLTYPE(BOOL, PCWSTR)>("DllInstall")(in, words);
  }
  HRESULT plain(const char* name) const { return function<HRESULT STDAPICALLTYPE()>(name)(); }

 private:
  HMODULE module_;
};

/// The text at a key below the classes of one of the two roots; empty where there is none.
std::wstring registered(HKEY root, const std::wstring& key, const wchar_t* name = nullptr) {
  std::array<wchar_t, 512> text{};
  DWORD size = sizeof text;
  const std::wstring full = L"Software\\Classes\\" + key;
  if (RegGetValueW(root, full.c_str(), name, RRF_RT_REG_SZ, nullptr, text.data(), &size) != ERROR_SUCCESS)
    return {};
  return text.data();
}

bool under_wine() {
  return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

/// What the process holds of the system and of itself. Its pages are no measure: where a file is loaded again
/// and again, the heap gets more of them though no more is in use.
struct Holdings {
  DWORD handles = 0;
  std::size_t bytes = 0;
  long objects = objects_alive;

  static Holdings now() {
    Holdings held;
    GetProcessHandleCount(GetCurrentProcess(), &held.handles);
    std::array<HANDLE, 64> heaps{};
    const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
    EXPECT_TRUE(count > 0 && count <= heaps.size());
    for (DWORD i = 0; i < count; ++i) {
      PROCESS_HEAP_ENTRY entry{};
      HeapLock(heaps[i]);
      while (HeapWalk(heaps[i], &entry))
        if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) held.bytes += entry.cbData;
      HeapUnlock(heaps[i]);
    }
    EXPECT_GT(held.bytes, 0U);
    return held;
  }
};

TEST(Component, IsRegisteredForTheUserOrForAllAndLeavesNothing) {
  const File file;
  struct Case {
    HKEY root;
    std::function<HRESULT(bool)> change;
  };
  const std::vector<Case> cases{
      {HKEY_CURRENT_USER, [&](bool in) { return file.install(in, L"user"); }},
      {HKEY_LOCAL_MACHINE,
       [&](bool in) { return file.plain(in ? "DllRegisterServer" : "DllUnregisterServer"); }},
      {HKEY_LOCAL_MACHINE, [&](bool in) { return file.install(in, nullptr); }},
  };
  for (const Case& row : cases) row.change(false);  // of a run that was cut off
  for (const Case& row : cases) {
    const HKEY other = row.root == HKEY_CURRENT_USER ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
    for (int twice = 0; twice < 2; ++twice) ASSERT_EQ(row.change(true), S_OK);
    EXPECT_EQ(registered(row.root, prog_id), L"Quorvex Esprit Schnittstelle");
    EXPECT_EQ(registered(other, prog_id), L"");
    const std::wstring class_key = L"CLSID\\" + registered(row.root, std::wstring(prog_id) + L"\\CLSID");
    const std::wstring server = class_key + L"\\InprocServer32";
    EXPECT_EQ(registered(row.root, server, L"ThreadingModel"), L"Apartment");
    EXPECT_TRUE(std::filesystem::equivalent(registered(row.root, server), COMPONENT));
    const std::wstring library = L"TypeLib\\" + registered(row.root, class_key + L"\\TypeLib") + L"\\1.0";
    EXPECT_EQ(registered(row.root, library), L"Quorvex Esprit Schnittstelle");
    if (row.root == HKEY_LOCAL_MACHINE ||
        !under_wine()) {  // Wine's runtime looks for classes of all users only
      const auto component = platform::load_component("");
      const automation::Ref made = component->create("QVEsprit.Connect");
      EXPECT_NEAR(made->call("PI", {}).to_double(), 3.14159265358979, 1e-12);
      EXPECT_FALSE(component->can_unload());
    }
    for (int twice = 0; twice < 2; ++twice) ASSERT_EQ(row.change(false), S_OK);
    for (const std::wstring& key : {std::wstring(prog_id), class_key, library})
      EXPECT_EQ(registered(row.root, key), L"");
  }
  EXPECT_EQ(file.install(TRUE, L"somebody"), E_INVALIDARG);
  EXPECT_THROW(platform::load_component("")->create("QVEsprit.Connect"), Failure);
}

class Driven : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const wchar_t* name : {L"QVEspritInstallPath", L"QVEspritUserModelsPath"}) {
      SetEnvironmentVariableW(name, L"C:\\");  // a missing one is told by a message box
    }
    CLSID class_id{};
    CLSIDFromString(L"{3FC3E243-D6FD-40B1-8814-836E9382C534}", &class_id);
    const auto get_class_object = file.function<decltype(DllGetClassObject)>("DllGetClassObject");
    ASSERT_EQ(get_class_object(class_id, IID_IClassFactory, factory.out_void()), S_OK);
    ASSERT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, connect.out_void()), S_OK);
  }
  bool can_unload() { return file.plain("DllCanUnloadNow") == S_OK; }

  const std::unique_ptr<platform::Component> loaded = platform::load_component(COMPONENT);
  const File file;
  ComPtr<IClassFactory> factory;
  ComPtr<IUnknown> connect;
};

TEST_F(Driven, AnswersARudeHostByResultCodes) {
  void* out = &out;
  const auto get_class_object = file.function<decltype(DllGetClassObject)>("DllGetClassObject");
  EXPECT_EQ(get_class_object(IID_IDispatch, IID_IClassFactory, &out), CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(factory->CreateInstance(connect.get(), IID_IUnknown, &(out = &out)), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(connect->QueryInterface(IID_IStream, &(out = &out)), E_NOINTERFACE);
  EXPECT_EQ(out, nullptr);

  const auto host_side = connect.as<IDTExtensibility2>();
  ASSERT_TRUE(host_side);
  EXPECT_EQ(host_side->OnDisconnection(0, nullptr), S_OK) << "without a connection";
  EXPECT_EQ(host_side->OnConnection(nullptr, 4711, nullptr, nullptr), static_cast<HRESULT>(0x800A005BU));
  ComPtr<IErrorInfo> information;
  Bstr text;
  ASSERT_EQ(GetErrorInfo(0, information.out()), S_OK);
  information->GetDescription(text.out());
  EXPECT_EQ(text.utf8(), "Object variable not set");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(host_side->OnAddInsUpdate(nullptr), S_OK);
    EXPECT_EQ(host_side->OnStartupComplete(nullptr), S_OK);
    EXPECT_EQ(host_side->OnDisconnection(0, nullptr), S_OK);
  }
}

TEST_F(Driven, OffersItsOperationsToLateBoundCallers) {
  const auto late = connect.as<IDispatch>();
  const automation::Ref object = platform::com::make_com_object(late.get());
  EXPECT_NEAR(object->call("PI", {}).to_double(), 3.14159265358979, 1e-12);
  std::vector<Value> nothing{automation::nothing};
  const std::vector<std::pair<std::string_view, automation::Args>> unconnected{
      {"RefreshQuorvexShapes", nothing}, {"getapptextfile", {}}};
  for (const auto& [name, args] : unconnected) {
    try {
      object->call(Member::named(name), args);
      ADD_FAILURE() << name;
    } catch (const Failure& failure) {
      EXPECT_STREQ(failure.what(), "Object variable not set") << name;
    }
  }
  EXPECT_THROW(object->call("ImportTools", {}), Failure);
}

TEST_F(Driven, StaysLoadedWhileAnythingIsHeld) {
  EXPECT_FALSE(can_unload());
  connect = {};
  EXPECT_FALSE(can_unload()) << "a factory";
  factory->LockServer(TRUE);
  const auto held = factory;
  factory = {};
  held->LockServer(FALSE);
  EXPECT_FALSE(can_unload());
}

TEST_F(Driven, LivesToTheEndOfItsEvent) {
  connect = {};
  factory = {};
  SessionOptions options;
  Session* session = nullptr;
  int until = 0;
  options.make_addin = [&] { return loaded->create("QVEsprit.Connect"); };
  options.gate.observer = [&](auto, const auto&, auto) {
    if (until == 0 || --until > 0) return;
    session->release();
    EXPECT_EQ(session->application().tool_bars->bars.size(), 1U) << "it isn't at its end";
    EXPECT_FALSE(can_unload());
  };
  Session driven(std::move(options));
  session = &driven;
  for (int moment = 1; moment <= 8; ++moment) {
    driven.connect();
    until = moment;
    driven.open("examples/shop/turret.json");
    EXPECT_EQ(until, 0);
    EXPECT_EQ(driven.failures(), 0U);
    EXPECT_EQ(driven.gate().left_behind(), "");
    EXPECT_EQ(driven.application().tool_bars->bars.size(), 0U);
    EXPECT_TRUE(can_unload());
  }
}

TEST(Component, IsConnectedManyTimesWithoutGrowth) {
  struct Case {
    const char* what;
    int rounds;
    bool is_loaded_anew;
    double most_bytes;  // a round
  };
  const auto sit = [](platform::Component& loaded) {
    SessionOptions options;
    options.make_addin = [&] { return loaded.create("QVEsprit.Connect"); };
    Session session(std::move(options));
    session.connect();
    session.open("examples/shop/turret.json");
    session.command_ui(1);
    session.take_down();
    ASSERT_EQ(session.failures(), 0U);
    ASSERT_EQ(session.gate().left_behind(), "");
    ASSERT_TRUE(loaded.can_unload());
  };
  for (const char* name : {"QVEspritInstallPath", "QVEspritUserModelsPath"})
    SetEnvironmentVariableA(name, "C:\\");                       // a missing one is told by a message box
  for (const Case& row : {Case{"in one load", 1000, false, 64},  // less than one object
                          Case{"loaded for each", 300, true, 4096}}) {
    auto kept = row.is_loaded_anew ? nullptr : platform::load_component(COMPONENT);
    const auto repeat = [&](int rounds) {
      for (int i = 0; i < rounds; ++i) sit(row.is_loaded_anew ? *platform::load_component(COMPONENT) : *kept);
    };
    repeat(100);  // until all that is kept for the process's time is there
    const Holdings before = Holdings::now();
    repeat(row.rounds);
    const Holdings after = Holdings::now();
    const double bytes = static_cast<double>(after.bytes) - static_cast<double>(before.bytes);
    RecordProperty(row.is_loaded_anew ? "loaded" : "kept", std::to_string(bytes / row.rounds));
    EXPECT_EQ(after.objects, before.objects) << row.what;
    EXPECT_EQ(after.handles, before.handles) << row.what;
    // what the compiler's runtime keeps of each load, for its threads and exceptions, is about 1.5 KB
    EXPECT_LT(bytes / row.rounds, row.most_bytes) << row.what;
  }
}

}  // namespace
}  // namespace component
