#pragma once

#include "automation/failure.h"
#include "platform/com/owners.h"

/// Where failures change their language: exceptions on our side, result codes and error information outside.
namespace platform::com {

/// The result code for what was thrown; its text goes into `info` and the result is DISP_E_EXCEPTION, or
/// where there is no `info` into the thread's error information.
HRESULT result_of(const automation::Failure& failure, EXCEPINFO* info) noexcept;
HRESULT result_of(const std::exception& error, EXCEPINFO* info) noexcept;

/// Around every entry of somebody else into our code: whatever is thrown inside ends here. Success is S_OK; a
/// failure with a number is 0x800A0000 + number, any other one E_FAIL.
template <class Entry>
HRESULT guard(const Entry& entry, EXCEPINFO* info = nullptr) noexcept {
  try {
    entry();
    return S_OK;
  } catch (const automation::Failure& failure) {  // by its type: a rethrow would unwind all over again
    return result_of(failure, info);
  } catch (const std::exception& error) {
    return result_of(error, info);
  } catch (...) {
    return E_UNEXPECTED;
  }
}

/// Throws the Failure that a result code stands for, with the text of the thread's error information where it
/// has one.
void check(HRESULT result);

/// The same for a call by `Invoke`; `info` is emptied.
void check_invoke(HRESULT result, EXCEPINFO& info);

}  // namespace platform::com
