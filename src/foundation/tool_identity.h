#pragma once

#include <string>
#include <string_view>

/// A tool's identity is a prefix, "#" and an identifier; a text without "#" counts as a whole.
namespace tool_identity {

std::string_view behind_first_hash(std::string_view identity) noexcept;
std::string_view behind_last_hash(std::string_view identity) noexcept;

/// The name of the file that shows the tool as a solid; what stands behind the first "#" names it.
std::string model_file(std::string_view identity);

}  // namespace tool_identity
