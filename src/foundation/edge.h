#pragma once

#include <exception>
#include <string>
#include <utility>

#include "automation/failure.h"

/// Around every entry of the host into the add-in: what leaves it is a Failure, whatever was thrown inside,
/// so that the host gets a text it can show and its process goes on.
template <class Entry>
decltype(auto) only_failures_leave(Entry&& entry) {
  using automation::Error;
  using automation::Failure;
  try {
    return std::forward<Entry>(entry)();
  } catch (const Failure&) {
    throw;
  } catch (const std::exception& error) {
    throw Failure(Error::internal_error, std::string(text_of(Error::internal_error)) + ": " + error.what());
  } catch (...) {
    throw Failure(Error::internal_error);
  }
}
