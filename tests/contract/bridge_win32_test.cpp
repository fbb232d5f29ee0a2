// A host that isn't ours, and not polite: what it gives, and what it leaves behind.

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <optional>

#include "automation/event_hub.h"
#include "automation/number.h"
#include "contract/sample.h"
#include "platform/com/bridge.h"
#include "platform/com/convert.h"
#include "platform/com/event_source.h"
#include "platform/com/own_types.h"
#include "platform/com/result.h"
#include "platform/com/unknown.h"

namespace contract {
namespace {

using automation::Binding;
using automation::Error;
using automation::Failure;
using automation::Member;
using automation::Ref;
using automation::Value;
using platform::com::Bstr;
using platform::com::ComPtr;
using platform::com::make;
using platform::com::objects_alive;
using platform::com::Unknown;
using platform::com::Variant;

/// Answers every member with what the test says, and remembers how it was asked.
class RudeHost final
    : public Unknown<IDispatch, IProvideClassInfo, IConnectionPointContainer, IConnectionPoint> {
 public:
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
    if (!type) return E_NOTIMPL;  // leaves rubbish behind
    *info = ComPtr(type).detach();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
    ++look_ups[Bstr::utf8_of(Bstr(platform::win32::utf8(*names)).get())];
    *ids = 77;
    return std::wstring(*names) == L"Unknown" ? DISP_E_UNKNOWNNAME : S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                                   EXCEPINFO* info, UINT*) override {
    asked.push_back(flags);
    if (params->cArgs > 0 && (V_VT(&params->rgvarg[0]) & VT_BYREF) && touch) touch(params->rgvarg[0]);
    if (fill_result) fill_result(*result);
    if (fill_exception) fill_exception(*info);
    const HRESULT now = answer;
    if (flags == DISPATCH_PROPERTYPUTREF && !knows_put_by_reference) return DISP_E_MEMBERNOTFOUND;
    return now;
  }
  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override {
    *info = ComPtr(platform::com::own_type("Sample").class_info).detach();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID, IConnectionPoint** point) override {
    *point = ComPtr<IConnectionPoint>::share(this).detach();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Advise(IUnknown* unknown, DWORD* cookie) override {
    sink = ComPtr<IUnknown>::share(unknown).as<IDispatch>();
    *cookie = 5;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD) override { return E_FAIL; }  // and keeps the sink
  HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }

  ComPtr<ITypeInfo> type;
  std::map<std::string, int> look_ups;
  std::vector<WORD> asked;
  std::function<void(VARIANT&)> touch, fill_result;
  std::function<void(EXCEPINFO&)> fill_exception;
  HRESULT answer = S_OK;
  bool knows_put_by_reference = true;
  ComPtr<IDispatch> sink;

 private:
  void* find(REFIID iid) noexcept override {
    if (iid == IID_IDispatch) return static_cast<IDispatch*>(this);
    if (iid == IID_IProvideClassInfo) return static_cast<IProvideClassInfo*>(this);
    if (iid == IID_IConnectionPointContainer) return static_cast<IConnectionPointContainer*>(this);
    return iid == IID_IConnectionPoint ? static_cast<IConnectionPoint*>(this) : nullptr;
  }
};

class ForeignHost : public ::testing::Test {
 protected:
  void TearDown() override {
    host->sink = {};
    host->type = {};
    object.reset();
    host = {};
    EXPECT_EQ(objects_alive, before) << "objects that were left";
  }
  std::string failure_text(const std::function<void()>& attempt) {
    try {
      attempt();
    } catch (const Failure& failure) {
      return failure.what();
    }
    return "none";
  }

  long before = objects_alive;
  ComPtr<RudeHost> host = make<RudeHost>();
  Ref object = platform::com::make_com_object(host.get());
};

TEST_F(ForeignHost, AnswersInTypesThatAValueDoesNotHave) {
  struct Case {
    const char* what;
    std::function<void(VARIANT&)> fill;
    const char* kind;
    const char* text;
  };
  static double number = 2.5;
  static BSTR text = SysAllocString(L"by reference");
  static VARIANT inner;
  const auto set = [](VARTYPE type, auto field, auto value) {
    return [=](VARIANT& target) {
      V_VT(&target) = type;
      target.*field = value;
    };
  };
  const std::vector<Case> cases{
      {"I1", set(VT_I1, &VARIANT::cVal, static_cast<CHAR>(-5)), "I2", "-5"},
      {"UI1", set(VT_UI1, &VARIANT::bVal, static_cast<BYTE>(250)), "I2", "250"},
      {"UI2", set(VT_UI2, &VARIANT::uiVal, static_cast<USHORT>(65535)), "I4", "65535"},
      {"UI4", set(VT_UI4, &VARIANT::ulVal, 4294967295UL), "R8", "4294967295"},
      {"I8", set(VT_I8, &VARIANT::llVal, -9007199254740992LL), "R8", "-9.00719925474099E+15"},
      {"INT", set(VT_INT, &VARIANT::intVal, -7), "I4", "-7"},
      {"R4", set(VT_R4, &VARIANT::fltVal, 0.5F), "R8", "0.5"},
      {"CY", set(VT_CY, &VARIANT::llVal, 12345LL), "R8", "1.2345"},
      {"DATE", set(VT_DATE, &VARIANT::date, 36526.25), "R8", "36526.25"},
      {"DECIMAL",
       [](VARIANT& v) {
         VarDecFromR8(1.25, &V_DECIMAL(&v));
         V_VT(&v) = VT_DECIMAL;
       },
       "R8", "1.25"},
      {"null", set(VT_NULL, &VARIANT::lVal, 99L), "Empty", ""},
      {"null text", set(VT_BSTR, &VARIANT::bstrVal, BSTR{}), "Text", ""},
      {"by reference R8", set(VT_BYREF | VT_R8, &VARIANT::pdblVal, &number), "R8", "2.5"},
      {"by reference BSTR", set(VT_BYREF | VT_BSTR, &VARIANT::pbstrVal, &text), "Text", "by reference"},
      {"error", set(VT_ERROR, &VARIANT::scode, static_cast<SCODE>(E_FAIL)), "failure", ""},
      {"unknown null", set(VT_UNKNOWN, &VARIANT::lVal, 0L), "Nothing", ""},
      {"no type at all", set(4711, &VARIANT::lVal, 1L), "failure", ""},
      {"a null reference", set(VT_BYREF | VT_I4, &VARIANT::lVal, 0L), "failure", ""},
  };
  for (const Case& row : cases) {
    host->fill_result = [&](VARIANT& result) {
      std::memset(&inner, 0, sizeof inner);
      std::memset(&result, 0, sizeof result);
      row.fill(result);
    };
    std::string kind = "failure", shown;
    try {
      const Value value = object->get("Any", {});
      kind = name_of(value.kind());
      shown = value.is(Value::Kind::Nothing) ? "" : value.to_text();
    } catch (const Failure&) {
    }
    EXPECT_EQ(kind, row.kind) << row.what;
    EXPECT_EQ(shown, row.text) << row.what;
  }
}

TEST_F(ForeignHost, LeavesRubbishWhereItFails) {
  host->answer = DISP_E_EXCEPTION;
  host->fill_exception = [](EXCEPINFO& info) {
    info.wCode = 13;
    info.bstrDescription = SysAllocString(L"Nicht verträglich");
    info.bstrSource = SysAllocString(L"Host");
  };
  host->touch = [](VARIANT& argument) {
    ASSERT_EQ(V_VT(&argument), VT_BYREF | VT_VARIANT);
    VariantClear(V_VARIANTREF(&argument));
    V_VT(V_VARIANTREF(&argument)) = 4711;
  };
  std::vector<Value> args{"whole"};
  EXPECT_EQ(failure_text([&] { object->call("Any", args); }), "Nicht verträglich");
  EXPECT_EQ(args[0].to_text(), "whole") << "a failed call changes no argument";
  host->fill_exception = {};
  EXPECT_EQ(failure_text([&] { object->call("Any", {}); }), "Automation error 0x80004005");
  const std::vector<std::pair<HRESULT, std::string>> codes{
      {DISP_E_BADINDEX, std::string(text_of(Error::subscript_out_of_range))},
      {RPC_E_DISCONNECTED, "The host's object is gone: its document, or the host, was closed (0x80010108)"},
      {E_NOINTERFACE, "The host's object has another type than the one that is needed (0x80004002)"},
      {0x80040E14, "Automation error 0x80040E14"},
  };
  for (const auto& [code, text] : codes) {
    host->answer = code;
    EXPECT_EQ(failure_text([&] { object->call("Any", {}); }), text);
  }
  host->answer = S_OK;
  EXPECT_EQ(failure_text([&] { object->call("Any", args); }), text_of(Error::type_mismatch));
}

TEST_F(ForeignHost, IsAskedForANameOnceForEachType) {
  const auto ask = [&](const ComPtr<RudeHost>& whom) {
    const Ref fresh = platform::com::make_com_object(whom.get());
    fresh->get("Diameter", {});
    fresh->get("DIAMETER", {});
    failure_text([&] { fresh->get("Unknown", {}); });
    failure_text([&] { fresh->get("Unknown", {}); });
  };
  for (int i = 0; i < 2; ++i) ask(host);
  EXPECT_EQ(host->look_ups["Diameter"], 2) << "no type information: each object for itself";
  host->look_ups.clear();
  host->type = platform::com::own_type("Sample").info;
  const auto other = make<RudeHost>();
  other->type = host->type;
  for (const auto& whom : {host, other, host}) ask(whom);
  EXPECT_EQ(host->look_ups["Diameter"] + other->look_ups["Diameter"], 1);
  EXPECT_EQ(host->look_ups["Unknown"] + other->look_ups["Unknown"], 1);
}

TEST_F(ForeignHost, PutsObjectsByReferenceWhereItCan) {
  object->put("Any", {}, automation::nothing);
  host->knows_put_by_reference = false;
  object->put("Any", {}, automation::nothing);
  object->put("Any", {}, 5);
  EXPECT_EQ(host->asked, (std::vector<WORD>{DISPATCH_PROPERTYPUTREF, DISPATCH_PROPERTYPUTREF,
                                            DISPATCH_PROPERTYPUT, DISPATCH_PROPERTYPUT}));
}

TEST_F(ForeignHost, RaisesAnEventAfterTheBindingsEnd) {
  int heard = 0;
  std::optional<bool> answer;
  Binding binding = object->events()->bind([&](Member, std::span<Value> given) {
    ++heard;
    if (answer) given[1] = *answer;
  });
  const auto sink = host->sink;
  VARIANTARG args[2];
  for (VARIANTARG& arg : args) VariantInit(&arg);
  DISPPARAMS params{args, nullptr, 2, 0};
  const auto raise = [&](DISPID event, DISPPARAMS* given) {
    return sink->Invoke(event, IID_NULL, 0, DISPATCH_METHOD, given, nullptr, nullptr, nullptr);
  };
  EXPECT_EQ(raise(9, &params), S_OK);
  EXPECT_EQ(raise(4711, &params), S_OK) << "an event that the source doesn't have";
  EXPECT_EQ(heard, 1);
  V_VT(&args[0]) = 4711;
  EXPECT_EQ(raise(9, &params), S_OK) << "an argument that is no value counts as left out";
  VariantInit(&args[0]);
  EXPECT_EQ(raise(9, nullptr), S_OK);
  EXPECT_EQ(heard, 3);
  DISPID numbers[] = {1, 0};
  DISPPARAMS named{args, numbers, 2, 2};
  VARIANT_BOOL flag = 1;
  V_VT(&args[0]) = VT_BYREF | VT_BOOL;
  V_BOOLREF(&args[0]) = &flag;
  answer = true;
  EXPECT_EQ(raise(9, &named), S_OK) << "all arguments by their names";
  EXPECT_EQ(flag, VARIANT_TRUE) << "an answer is written back, though 1 was true before";
  binding.release();
  object.reset();
  EXPECT_EQ(raise(9, &params), S_OK);
  EXPECT_EQ(heard, 4) << "late";
}

TEST_F(ForeignHost, SeesOneInterfaceForOneObject) {
  const auto sample = std::make_shared<Sample>("Sample");
  const auto first = platform::com::make_dispatch(sample);
  EXPECT_EQ(platform::com::make_dispatch(sample).get(), first.get());
  EXPECT_EQ(platform::com::import_object(first.get()), sample) << "back in its own module";
  EXPECT_EQ(platform::com::export_object(object).get(), host.get());
  EXPECT_TRUE(platform::com::import_object(nullptr) == nullptr);
}

}  // namespace
}  // namespace contract
