#pragma once

#include <cstdint>

#include "host/document.h"

namespace global {

/// The type of a machine setup parameter's value: 3 Long, 5 Double, 8 String. Total.
std::int32_t MachineParameterType(std::int32_t number) noexcept;

/// The value of a machine setup parameter in the type of its number; `index` counts the programs from 1.
/// Empty where the document has no such setup. A failure is told to the user and gives an empty value.
automation::Value GetMachineSetupParameter(const host::Document& document, std::int32_t number,
                                           const automation::Value& index);

}  // namespace global
