#pragma once

#include <functional>

#include "platform/com/owners.h"

namespace platform::com {

/// A class factory whose objects `maker` makes; a Failure of the maker reaches whoever creates. The result of
/// `DllGetClassObject`.
HRESULT give_factory(std::function<ComPtr<IUnknown>()> maker, REFIID iid, void** out) noexcept;

/// The factory of a class that this module offers (see `offer_classes`), for a `DllGetClassObject` of the
/// program: what the program's manifest says of the class leads here.
HRESULT give_offered_factory(REFCLSID class_id, REFIID iid, void** out) noexcept;

}  // namespace platform::com
