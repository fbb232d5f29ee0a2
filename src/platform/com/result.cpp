#include "platform/com/result.h"

#include <algorithm>
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

struct Advice {
  unsigned long result;
  const char* text;
};
/// What a user can do about codes that name no error of a member; the code itself follows in brackets.
constexpr std::array<Advice, 15> advices{{
    {0x80004001, "The host doesn't offer this"},                                           // E_NOTIMPL
    {0x80004002, "The host's object has another type than the one that is needed"},        // E_NOINTERFACE
    {0x8000FFFF, "The host failed without saying why; save the document and restart it"},  // E_UNEXPECTED
    {0x80070005, "Access denied: host and programs have to run as the same user"},         // E_ACCESSDENIED
    {0x8007000E, "Out of memory"},                                                         // E_OUTOFMEMORY
    {0x80010001, "The host is busy: end what it is doing and try again"},  // RPC_E_CALL_REJECTED
    {0x8001010A, "The host is busy: end what it is doing and try again"},  // RPC_E_SERVERCALL_RETRYLATER
    {0x80010105, "The host failed within the call; save the document and restart it"},  // RPC_E_SERVERFAULT
    {0x80010108, "The host's object is gone: its document, or the host, was closed"},   // RPC_E_DISCONNECTED
    {0x800401FD, "The host's object is gone: its document, or the host, was closed"},  // CO_E_OBJNOTCONNECTED
    {0x8001010E, "The host called from another thread than the one that connected"},   // RPC_E_WRONG_THREAD
    {0x80010012, "The host ended within the call"},                                  // RPC_E_SERVER_DIED_DNE
    {0x800700C1, "The file is of the other width: register the one of the host's"},  // ERROR_BAD_EXE_FORMAT
    {0x800706BA, "The host doesn't answer: it was closed or has crashed"},  // RPC_S_SERVER_UNAVAILABLE
    {0x800706BE, "The host ended within the call"},                         // RPC_S_CALL_FAILED
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
  const auto code = static_cast<unsigned long>(result);
  const auto advice = std::ranges::find(advices, code, &Advice::result);
  const bool is_known = advice != advices.end();
  std::array<char, 128> shown{};
  std::snprintf(shown.data(), shown.size(), is_known ? "%s (0x%08lX)" : "%s 0x%08lX",
                is_known ? advice->text : "Automation error", code);
  throw Failure(shown.data());
}

void set_error_information(const std::string& text) noexcept {
  ComPtr<ICreateErrorInfo> made;
  if (FAILED(CreateErrorInfo(made.out()))) return;
  const Bstr description(text);
  made->SetDescription(description.get());
  if (const auto information = made.as<IErrorInfo>()) SetErrorInfo(0, information.get());
}

}  // namespace

HRESULT result_of(const Failure& failure, EXCEPINFO* info) noexcept {
  try {
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
  } catch (...) {
    return E_OUTOFMEMORY;  // no room for the text
  }
}

HRESULT result_of(const std::exception& error, EXCEPINFO* info) noexcept {
  try {
    return result_of(
        Failure(Error::internal_error, std::string(text_of(Error::internal_error)) + ": " + error.what()),
        info);
  } catch (...) {
    return E_OUTOFMEMORY;
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
