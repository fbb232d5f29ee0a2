#include "platform/com/result.h"

#include <array>
#include <cstdio>

namespace platform::com {

using automation::Error;
using automation::Failure;

namespace {

constexpr HRESULT numbered = static_cast<HRESULT>(0x800A0000U);

struct Meaning {
  HRESULT result;
  Error error;
};
/// What the component runtime says by a code alone.
constexpr std::array<Meaning, 13> meanings{{
    {DISP_E_MEMBERNOTFOUND, Error::no_such_member},
    {DISP_E_UNKNOWNNAME, Error::no_such_member},
    {DISP_E_TYPEMISMATCH, Error::type_mismatch},
    {DISP_E_BADVARTYPE, Error::type_mismatch},
    {DISP_E_OVERFLOW, Error::overflow},
    {DISP_E_BADINDEX, Error::subscript_out_of_range},
    {DISP_E_PARAMNOTFOUND, Error::argument_missing},
    {DISP_E_PARAMNOTOPTIONAL, Error::argument_missing},
    {DISP_E_BADPARAMCOUNT, Error::argument_missing},
    {E_INVALIDARG, Error::invalid_argument},
    {REGDB_E_CLASSNOTREG, Error::cannot_create_object},
    {CLASS_E_CLASSNOTAVAILABLE, Error::cannot_create_object},
    {CO_E_CLASSSTRING, Error::cannot_create_object},
}};

Error error_of(HRESULT result) {
  if ((static_cast<unsigned long>(result) & 0xffff0000U) == 0x800A0000U) {
    return automation::error_numbered(HRESULT_CODE(result));
  }
  for (const Meaning& row : meanings) {
    if (row.result == result) return row.error;
  }
  return Error::none;
}

[[noreturn]] void fail(HRESULT result, const std::string& text) {
  const Error error = error_of(result);
  if (!text.empty()) throw Failure(error, text);
  if (error != Error::none) throw Failure(error);
  std::array<char, 48> fallback{};
  std::snprintf(fallback.data(), fallback.size(), "Automation error 0x%08lX",
                static_cast<unsigned long>(result));
  throw Failure(fallback.data());
}

void set_error_information(const std::string& text) noexcept {
  ComPtr<ICreateErrorInfo> made;
  if (FAILED(CreateErrorInfo(made.out()))) return;
  const Bstr description(text);
  made->SetDescription(description.get());
  if (const auto information = made.as<IErrorInfo>()) SetErrorInfo(0, information.get());
}

HRESULT hand_over(const Failure& failure, EXCEPINFO* info) {
  const int number = automation::number_of(failure.error());
  const HRESULT result = number == 0 ? E_FAIL : static_cast<HRESULT>(numbered + number);
  if (info == nullptr) {
    set_error_information(failure.what());
    return result;
  }
  *info = {};
  info->scode = result;
  info->bstrDescription = Bstr(failure.what()).detach();
  return DISP_E_EXCEPTION;
}

}  // namespace

HRESULT result_of_exception(EXCEPINFO* info) noexcept {
  try {
    try {
      throw;
    } catch (const Failure& failure) {
      return hand_over(failure, info);
    } catch (const std::exception& error) {
      const std::string text = std::string(text_of(Error::internal_error)) + ": " + error.what();
      return hand_over(Failure(Error::internal_error, text), info);
    }
  } catch (...) {
    return E_UNEXPECTED;  // nothing that has a text, or no room for one
  }
}

void check(HRESULT result) {
  if (SUCCEEDED(result)) return;
  ComPtr<IErrorInfo> information;
  Bstr text;
  if (GetErrorInfo(0, information.out()) == S_OK) information->GetDescription(text.out());
  fail(result, text.utf8());
}

void check_invoke(HRESULT result, EXCEPINFO& info) {
  if (result == DISP_E_EXCEPTION && info.pfnDeferredFillIn != nullptr) info.pfnDeferredFillIn(&info);
  const EXCEPINFO given = std::exchange(info, EXCEPINFO{});
  Bstr text, source, help;
  *text.out() = given.bstrDescription;
  *source.out() = given.bstrSource;
  *help.out() = given.bstrHelpFile;
  if (result != DISP_E_EXCEPTION) return check(result);
  fail(given.scode != 0   ? given.scode
       : given.wCode != 0 ? static_cast<HRESULT>(numbered + given.wCode)
                          : E_FAIL,
       text.utf8());
}

}  // namespace platform::com
