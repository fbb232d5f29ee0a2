#pragma once

#include <windows.h>

#include <string>

namespace platform::com {

/// The module that this code is part of, and its file.
HMODULE own_module() noexcept;
std::wstring own_module_file();

}  // namespace platform::com
