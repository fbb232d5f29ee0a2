// Several threads of a host, and several versions and widths of the component, beside each other.

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <thread>

#include "deskhost/knowledgebase/knowledge_base.h"
#include "deskhost/model/application.h"
#include "deskhost/session/session.h"
#include "platform/com/extensibility.h"
#include "platform/com/unknown.h"
#include "platform/component_runtime.h"

namespace component {
namespace {

namespace fs = std::filesystem;
using automation::Failure;
using platform::com::ComPtr;

/// A thread of a host that makes objects of its own.
class Apartment {
 public:
  explicit Apartment(DWORD kind) : entered_(CoInitializeEx(nullptr, kind)) {}
  ~Apartment() {
    if (SUCCEEDED(entered_)) CoUninitialize();
  }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;

 private:
  HRESULT entered_;
};

using Register = HRESULT STDAPICALLTYPE();

HRESULT call(const fs::path& file, const char* function) {
  const HMODULE module = LoadLibraryW(file.c_str());
  const auto done = reinterpret_cast<Register*>(reinterpret_cast<void*>(GetProcAddress(module, function)))();
  FreeLibrary(module);
  return done;
}

constexpr const wchar_t* class_key =
    L"Software\\Classes\\CLSID\\{3FC3E243-D6FD-40B1-8814-836E9382C534}\\InprocServer32";
constexpr const wchar_t* library_key =
    L"Software\\Classes\\TypeLib\\{44DE783D-14FC-4DC5-8210-C7FD7A0462C3}\\1.0\\0";
constexpr const wchar_t* name_key = L"Software\\Classes\\QVEsprit.Connect\\CLSID";
constexpr const wchar_t* shared_interface_key =
    L"Software\\Classes\\Interface\\{B65AD801-ABAF-11D0-BB8B-00A0C90F2744}\\TypeLib";

std::wstring text_at(const std::wstring& key, DWORD width = RRF_SUBKEY_WOW6464KEY) {
  std::array<wchar_t, 512> text{};
  DWORD size = sizeof text;
  RegGetValueW(HKEY_LOCAL_MACHINE, key.c_str(), nullptr, RRF_RT_REG_SZ | width, nullptr, text.data(), &size);
  return text.data();
}

void set_text(const std::wstring& key, const std::wstring& text, REGSAM width) {
  HKEY opened = nullptr;
  RegCreateKeyExW(HKEY_LOCAL_MACHINE, key.c_str(), 0, nullptr, 0, KEY_WRITE | width, nullptr, &opened,
                  nullptr);
  RegSetValueExW(opened, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                 static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  RegCloseKey(opened);
}

void delete_tree(const std::wstring& key, REGSAM width) {
  HKEY opened = nullptr;
  const std::size_t name = key.rfind(L'\\');
  RegOpenKeyExW(HKEY_LOCAL_MACHINE, key.substr(0, name).c_str(), 0, KEY_ALL_ACCESS | width, &opened);
  RegDeleteTreeW(opened, key.c_str() + name + 1);
  RegCloseKey(opened);
}

TEST(Apartments, LiveWholeLivesAtOnce) {
  const fs::path folder = fs::temp_directory_path() / "qvesprit-apartments";
  fs::remove_all(folder);
  for (const char* name : {"programs", "models"}) fs::create_directories(folder / name);
  fs::copy_file(fs::path(PROGRAMS) / "QV-ToolExport.exe", folder / "programs" / "QV-ToolExport.exe");
  for (const char* name : {"shop-tools.csv", "shop-speeds.csv"})
    fs::copy_file(fs::path("examples/shop") / name, folder / name);
  SetEnvironmentVariableW(L"QVEspritInstallPath", ((folder / "programs").native() + L"\\").c_str());
  SetEnvironmentVariableW(L"QVEspritExportPath", folder.c_str());
  SetEnvironmentVariableW(L"QVEspritUserModelsPath", (folder / "models").c_str());

  const auto loaded = platform::load_component(COMPONENT);
  std::array<std::string, 2> seen;
  const auto live = [&](std::string& log) {
    const Apartment apartment(COINIT_APARTMENTTHREADED);
    constexpr int rounds = 4;
    for (int round = 0; round < rounds; ++round) {
      deskhost::SessionOptions options;
      options.make_addin = [&] { return loaded->create("QVEsprit.Connect"); };
      deskhost::Session session(std::move(options));
      session.offer("KnowledgeBase", deskhost::knowledge_base_maker(""));
      session.connect();
      session.open("examples/shop/turret.json");
      session.command(1);
      const auto tools = session.application().document->get("Tools", {}).to_object()->get("Count", {});
      session.take_down();
      log += tools.to_text() + " " + std::to_string(session.failures()) + session.gate().left_behind() + "\n";
    }
  };
  live(seen[0]);
  const std::string alone = std::exchange(seen[0], "");
  EXPECT_EQ(alone.find("0 "), std::string::npos) << alone;
  std::array<std::thread, 2> threads;
  for (std::size_t i = 0; i < threads.size(); ++i) threads.at(i) = std::thread(live, std::ref(seen.at(i)));
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(seen[0], alone);
  EXPECT_EQ(seen[1], alone);
  EXPECT_TRUE(loaded->can_unload());
}

TEST(Registration, TakesOutOnlyWhatNamesItsFile) {
  const fs::path now = COMPONENT;
  const fs::path newer = fs::temp_directory_path() / "qvesprit-newer" / now.filename();
  fs::create_directories(newer.parent_path());
  fs::copy_file(now, newer, fs::copy_options::overwrite_existing);
  const std::wstring other_class = L"C:\\32\\QVEsprit.dll";

  ASSERT_EQ(call(now, "DllRegisterServer"), S_OK);
  ASSERT_EQ(call(newer, "DllRegisterServer"), S_OK);
  ASSERT_EQ(call(now, "DllUnregisterServer"), S_OK) << "the old folder's, after the new one's is in";
  EXPECT_EQ(text_at(class_key), newer.native());
  EXPECT_EQ(text_at(library_key + std::wstring(L"\\win64")), newer.native());
  EXPECT_NE(text_at(name_key), L"");

  // As the other width enters itself; it isn't run here.
  set_text(class_key, other_class, KEY_WOW64_32KEY);
  set_text(library_key + std::wstring(L"\\win32"), other_class, KEY_WOW64_64KEY);
  ASSERT_EQ(call(newer, "DllUnregisterServer"), S_OK);
  EXPECT_EQ(text_at(class_key), L"");
  EXPECT_EQ(text_at(class_key, RRF_SUBKEY_WOW6432KEY), other_class);
  EXPECT_EQ(text_at(library_key + std::wstring(L"\\win64")), L"");
  EXPECT_EQ(text_at(library_key + std::wstring(L"\\win32")), other_class);
  EXPECT_NE(text_at(name_key), L"") << "the name of both widths";

  delete_tree(fs::path(class_key).parent_path().native(), KEY_WOW64_32KEY);
  delete_tree(library_key + std::wstring(L"\\win32"), KEY_WOW64_64KEY);
  const std::wstring strangers = L"{AC0714F2-3D04-11D1-AE7D-00A0C90F26F4}";
  set_text(shared_interface_key, strangers, KEY_WOW64_64KEY);
  ASSERT_EQ(call(now, "DllRegisterServer"), S_OK);
  ASSERT_EQ(call(now, "DllUnregisterServer"), S_OK);
  EXPECT_EQ(text_at(name_key), L"");
  EXPECT_EQ(text_at(shared_interface_key), strangers) << "an interface that all add-ins share";
  delete_tree(fs::path(shared_interface_key).parent_path().native(), KEY_WOW64_64KEY);
  fs::remove_all(newer.parent_path());
}

TEST(Registration, LetsItsInterfacesThroughToOtherApartments) {
  ASSERT_EQ(call(COMPONENT, "DllRegisterServer"), S_OK);
  const Apartment own(COINIT_APARTMENTTHREADED);
  CLSID class_id{};
  ComPtr<IUnknown> connect;
  IStream* passed = nullptr;
  CLSIDFromProgID(L"QVEsprit.Connect", &class_id);
  CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, connect.out_void());
  ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(IID_IUnknown, connect.get(), &passed), S_OK);
  HRESULT told = E_FAIL;
  std::atomic<bool> done = false;
  std::thread other([&] {
    const Apartment free(COINIT_MULTITHREADED);
    ComPtr<IUnknown> seen;
    SAFEARRAY* none = nullptr;
    CoGetInterfaceAndReleaseStream(passed, IID_IUnknown, seen.out_void());
    if (const auto host_side = seen.as<IDTExtensibility2>()) told = host_side->OnStartupComplete(&none);
    seen = {};
    done = true;
  });
  for (MSG message; !done; MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT)) {
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
  }
  other.join();
  CoDisconnectObject(connect.get(), 0);
  connect = {};
  EXPECT_EQ(told, S_OK);
  EXPECT_EQ(call(COMPONENT, "DllUnregisterServer"), S_OK);
}

TEST(Component, SaysThatAFileIsOfTheOtherWidth) {
  const fs::path file = fs::temp_directory_path() / "qvesprit-other-width.dll";
  std::ofstream(file) << "as much a component for this width as one of the other";
  try {
    platform::load_component(file.string());
    ADD_FAILURE() << "loaded";
  } catch (const Failure& failure) {
    EXPECT_STREQ(failure.what(), "it isn't a DLL of 64 bits, as this program is");
  }
  fs::remove(file);
}

}  // namespace
}  // namespace component
