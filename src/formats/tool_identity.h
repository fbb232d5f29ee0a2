#pragma once

#include <optional>
#include <string>
#include <string_view>

/// A tool's identity is a prefix, "#" and an identifier; a text without "#" counts as a whole.
namespace tool_identity {

std::string_view behind_first_hash(std::string_view identity) noexcept;
std::string_view behind_last_hash(std::string_view identity) noexcept;
/// The second piece where "#" splits the identity in exactly two.
std::optional<std::string_view> second_of_two(std::string_view identity) noexcept;

/// The name of the file that shows the tool as a solid; what stands behind the first "#" names it.
std::string model_file(std::string_view identity);

}  // namespace tool_identity
