#pragma once

#include <string>
#include <string_view>

/// Texts on their way to the system's wide functions and back.
namespace platform::win32 {

/// Total both ways: what isn't well-formed becomes U+FFFD.
std::wstring wide(std::string_view utf8);
std::string utf8(std::wstring_view wide);

}  // namespace platform::win32
