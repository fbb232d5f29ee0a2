// What the way through the component runtime costs, on Windows: a parameter write beside a direct call and
// beside a bridge that looks names up each time; the names that a whole import looks up; and where an import
// spends its time. Run from the project's root: tools/run-windows PREFIX
// build/windows/benchmarks/bridge_benchmark.exe

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "component/connect_object.h"
#include "deskhost/knowledgebase/knowledge_base.h"
#include "deskhost/session/session.h"
#include "platform/com/bridge.h"
#include "platform/com/own_types.h"
#include "platform/com/unknown.h"
#include "platform/component_runtime.h"

namespace {

namespace fs = std::filesystem;
using automation::Ref;
using automation::Value;
using platform::com::Bstr;
using platform::com::ComPtr;
using platform::com::Variant;
using Clock = std::chrono::steady_clock;

double seconds_since(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"  // as the system's own interfaces
struct IParameter : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE put_Value(VARIANT value) = 0;
};
#pragma GCC diagnostic pop

/// A parameter of a host that keeps what it is given, and nothing else.
class Parameter final : public platform::com::Unknown<IParameter> {
 public:
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 1;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
    *info = ComPtr(platform::com::own_type("ToolParameter").info).detach();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
    // as the system's own look-up in a type of two members
    ids[0] = lstrcmpiW(names[0], L"Code") == 0 ? 1 : lstrcmpiW(names[0], L"Value") == 0 ? 2 : DISPID_UNKNOWN;
    return ids[0] == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return put_Value(params->rgvarg[0]);
  }
  HRESULT STDMETHODCALLTYPE put_Value(VARIANT value) override { return VariantCopy(&kept_.get(), &value); }

 private:
  void* find(REFIID iid) noexcept override {
    return iid == IID_IDispatch ? static_cast<IDispatch*>(this) : nullptr;
  }
  Variant kept_;
};

template <class Write>
double nanoseconds_each(const Write& write) {
  constexpr int rounds = 7;
  constexpr int writes = 200000;
  std::vector<double> times;
  for (int round = 0; round < rounds; ++round) {
    const auto start = Clock::now();
    for (int i = 0; i < writes; ++i) write();
    times.push_back(seconds_since(start) / writes * 1e9);
  }
  std::ranges::sort(times);
  return times[rounds / 2];
}

void measure_writes() {
  const auto host = platform::com::make<Parameter>();
  const Ref bridge = platform::com::make_com_object(host.get());
  const Value text("123.456");
  Variant plain;
  V_BSTR(&plain.get()) = Bstr("123.456").detach();
  V_VT(&plain.get()) = VT_BSTR;
  const double direct = nanoseconds_each([&] { host->put_Value(plain.get()); });
  const double bridged = nanoseconds_each([&] { bridge->put("Value", {}, text); });
  const double fresh =
      nanoseconds_each([&] { platform::com::make_com_object(host.get())->put("Value", {}, text); });
  const double by_name = nanoseconds_each([&] {
    DISPID id = 0;
    std::wstring name = platform::win32::wide("Value");
    wchar_t* names = name.data();
    host->GetIDsOfNames(IID_NULL, &names, 1, 0, &id);
    bridge->put("Value", {}, text);
  });
  std::printf(
      "parameter write: direct %.0f ns, bridge %.0f ns, bridge to a new object %.0f ns, names each time %.0f "
      "ns\n",
      direct, bridged, fresh, by_name);
}

/// The shop of the examples, grown to so many tools, with its exporter.
class Shop {
 public:
  explicit Shop(int count) : folder_(fs::temp_directory_path() / "qvesprit-bridge-benchmark") {
    fs::remove_all(folder_);
    for (const char* name : {"programs", "models"}) fs::create_directories(folder_ / name);
    fs::copy_file(fs::path(PROGRAMS) / "QV-ToolExport.exe", folder_ / "programs" / "QV-ToolExport.exe");
    std::ofstream(folder_ / "shop-speeds.csv");
    write_tools(count);
    nlohmann::json document{{"Name", "large.esp"}};
    std::ofstream(document_file()) << document.dump();
    SetEnvironmentVariableW(L"QVEspritInstallPath", ((folder_ / "programs").native() + L"\\").c_str());
    SetEnvironmentVariableW(L"QVEspritExportPath", folder_.c_str());
    SetEnvironmentVariableW(L"QVEspritUserModelsPath", (folder_ / "models").c_str());
  }
  ~Shop() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }
  Shop(const Shop&) = delete;
  Shop& operator=(const Shop&) = delete;

  [[nodiscard]] std::string document_file() const { return (folder_ / "document.json").string(); }

 private:
  void write_tools(int count) const {
    std::ifstream in("examples/shop/shop-tools.csv", std::ios::binary);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
      if (!line.empty() && line[0] >= '0' && line[0] <= '9') lines.push_back(line);
    }
    std::ofstream out(folder_ / "shop-tools.csv", std::ios::binary);
    for (int i = 0; i < count; ++i) {
      const std::string& line = lines.at(static_cast<std::size_t>(i) % lines.size());
      const std::size_t hash = line.find('#');
      out << line.substr(0, hash) << '#' << 1000000 + i << line.substr(line.find(';', hash)) << '\n';
    }
  }

  fs::path folder_;
};

struct Import {
  double total = 0;
  double host = 0;
  std::uint64_t calls = 0;
};

/// `make_addin` decides the way: straight, or by the component's file.
Import import(const Shop& shop, std::function<Ref()> make_addin) {
  Import result;
  int depth = 0;
  Clock::time_point began;
  deskhost::SessionOptions options;
  options.make_addin = std::move(make_addin);
  options.gate.observer = [&](deskhost::CallKind, const automation::Object&, automation::Member) {
    if (depth++ == 0) began = Clock::now();
  };
  options.gate.finished = [&] {
    if (--depth == 0) result.host += seconds_since(began);
  };
  deskhost::Session session(std::move(options));
  session.offer("KnowledgeBase", deskhost::knowledge_base_maker(""));
  session.connect();
  session.open(shop.document_file());
  result.host = 0;
  const std::uint64_t calls_before = session.gate().calls();
  const auto start = Clock::now();
  session.command(1);
  result.total = seconds_since(start);
  result.calls = session.gate().calls() - calls_before;
  session.take_down();
  if (session.failures() != 0) std::puts("the add-in handed a failure back");
  return result;
}

void measure_import() {
  constexpr int tools = 1000;
  const Shop shop(tools);
  const Import straight = import(shop, component::make_connect_object);
  const auto loaded = platform::load_component(COMPONENT);
  const Import bridged = import(shop, [&] { return loaded->create("QVEsprit.Connect"); });
  for (const auto& [name, run] : {std::pair{"straight", straight}, std::pair{"by the component", bridged}}) {
    std::printf(
        "import of %d tools, %s: %.0f ms, of that in the host %.0f ms, outside %.0f ms; %llu host calls\n",
        tools, name, run.total * 1e3, run.host * 1e3, (run.total - run.host) * 1e3,
        static_cast<unsigned long long>(run.calls));
  }
  const auto& asked = platform::com::look_ups();
  const auto most = std::ranges::max_element(asked, {}, [](const auto& entry) { return entry.second; });
  std::printf("names looked up: %zu members of types, at most %ld time(s) each (%s)\n", asked.size(),
              most == asked.end() ? 0 : most->second, most == asked.end() ? "" : most->first.c_str());
}

}  // namespace

int main() {
  measure_writes();
  measure_import();
}
