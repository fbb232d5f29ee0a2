#pragma once

#include <sql.h>
#include <sqlext.h>

#include <string>
#include <string_view>
#include <vector>

namespace deskhost {

/// Texts go to a wide driver as UTF-16, since it would read narrow ones in the locale's character set.
using OdbcText = std::basic_string<SQLWCHAR>;

/// Total both ways: what isn't well-formed becomes U+FFFD.
OdbcText to_odbc(std::string_view utf8);
std::string from_odbc(const SQLWCHAR* text, std::size_t units);

}  // namespace deskhost
