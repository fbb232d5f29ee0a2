#pragma once

#include <string>
#include <string_view>

namespace mQuorvexList {

/// The material code between "{" and "}" in a name of the knowledge base. A missing "{" counts as one in
/// front of the text; where "}" is missing or comes first, the code is empty. A code that isn't a number is
/// told to the user and given all the same. Never throws Failure.
std::string ExtractMaterialCode(std::string_view text);

}  // namespace mQuorvexList
