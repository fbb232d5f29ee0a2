// Host objects that show more than one interface, or the type of another one.

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/com/bridge.h"
#include "platform/com/class_info.h"
#include "platform/com/convert.h"
#include "platform/com/object_dispatch.h"
#include "platform/com/own_types.h"
#include "platform/com/unknown.h"

namespace contract {
namespace {

using automation::Array;
using automation::Failure;
using automation::Value;
using platform::com::ComPtr;
using platform::com::make;
using platform::com::make_com_object;
using platform::com::own_type;
using platform::com::Unknown;

/// One dispatch interface of a host's object: its names have ids from `first` on, and a member's value is its
/// id.
class Face final : public Unknown<IDispatch, IProvideClassInfo> {
 public:
  Face(std::vector<std::wstring> has, DISPID first_id, ComPtr<ITypeInfo> tells)
      : names(std::move(has)), first(first_id), type(std::move(tells)) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) noexcept override {
    if (!view || iid != platform::com::guid_of(view->type.get())) return Unknown::QueryInterface(iid, out);
    *out = static_cast<IDispatch*>(ComPtr(view).detach());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
    *info = ComPtr(type).detach();
    return type ? S_OK : E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* asked, UINT, LCID, DISPID* ids) override {
    ++look_ups;
    const auto place = std::ranges::find(names, std::wstring(*asked));
    *ids = place == names.end() ? DISPID_UNKNOWN : first + static_cast<DISPID>(place - names.begin());
    return place == names.end() ? DISP_E_UNKNOWNNAME : S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    if (id == DISPID_NEWENUM ? !enumerates : id < first || id - first >= static_cast<DISPID>(names.size()))
      return DISP_E_MEMBERNOTFOUND;
    if (flags & DISPATCH_PROPERTYPUT) {
      put = platform::com::to_value(params->rgvarg[0]);
      return S_OK;
    }
    V_VT(result) = id == DISPID_NEWENUM ? VT_UNKNOWN : VT_I4;
    if (id == DISPID_NEWENUM) {
      V_UNKNOWN(result) = platform::com::make_enumerator(Array{1, 2, 3}).detach();
    } else {
      V_I4(result) = id;
    }
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override {
    *info = ComPtr(own_type("Split").class_info).detach();
    return S_OK;
  }

  std::vector<std::wstring> names;
  DISPID first;
  ComPtr<ITypeInfo> type;
  ComPtr<Face> view;
  bool tells_class = false, enumerates = false;
  int look_ups = 0;
  Value put;

 private:
  void* find(REFIID iid) noexcept override {
    if (iid == IID_IDispatch) return static_cast<IDispatch*>(this);
    return iid == IID_IProvideClassInfo && tells_class ? static_cast<IProvideClassInfo*>(this) : nullptr;
  }
};

ComPtr<Face> split(bool tells_class) {
  auto object = make<Face>(std::vector<std::wstring>{L"Name"}, 1, own_type("Split").info);
  object->tells_class = tells_class;
  object->view = make<Face>(std::vector<std::wstring>{L"Item", L"Count"}, 1, own_type("SplitView").info);
  object->view->enumerates = true;
  return object;
}

TEST(AnObjectsFaces, AreLookedThroughForAMember) {
  for (const bool tells_class : {true, false}) {
    const auto first = split(tells_class), second = split(tells_class), plain = split(tells_class);
    plain->view = {};
    const auto known = make_com_object(first.get());
    EXPECT_THROW(known->get("Absent", {}), Failure);
    for (const auto& host : {first, second}) {
      const auto object = make_com_object(host.get());
      EXPECT_EQ(object->get("Name", {}).to_int32(), 1);
      EXPECT_EQ(object->get("Count", {}).to_int32(), 2);
      object->put("Item", {}, "into the view");
      EXPECT_EQ(host->view->put.to_text(), "into the view");
      EXPECT_EQ(object->get("_NewEnum", {}).to_array().size(), 3U);
    }
    EXPECT_EQ(second->look_ups + second->view->look_ups, 0) << "remembered by type";
    EXPECT_THROW(make_com_object(plain.get())->get("Count", {}), Failure) << "another class of the same type";
    second->view->names.emplace_back(L"Absent");
    EXPECT_EQ(make_com_object(second.get())->get("Absent", {}).to_int32(), 3) << "and one that has more";
  }
}

TEST(AnObjectsIds, AreItsOwnWhereItsTypeIsNot) {
  ComPtr<ITypeLib> library;
  ComPtr<ITypeInfo> of_any;
  ASSERT_EQ(LoadTypeLib(L"stdole2.tlb", library.out()), S_OK);
  ASSERT_EQ(library->GetTypeInfoOfGuid(IID_IDispatch, of_any.out()), S_OK);
  for (const auto& type : {of_any, own_type("SampleEvents").info}) {  // which lists another member
    const auto first = make<Face>(std::vector<std::wstring>{L"Name", L"Length"}, 1, type);
    const auto second = make<Face>(std::vector<std::wstring>{L"Length", L"Name"}, 1, type);
    const auto one = make_com_object(first.get()), other = make_com_object(second.get());
    for (int round = 0; round < 2; ++round) {
      EXPECT_EQ(one->get("Length", {}).to_int32(), 2);
      EXPECT_EQ(other->get("Length", {}).to_int32(), 1);
    }
    EXPECT_EQ(first->look_ups, 1) << "each object is asked once";
  }
}

}  // namespace
}  // namespace contract
