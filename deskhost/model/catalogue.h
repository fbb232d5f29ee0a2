#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "deskhost/model/parameter_kind.h"

/// Every parameter that a tool can have, in the order in which a document file lists them.
namespace deskhost::catalogue {

enum class Classes { all, turning, milling };

struct Parameter {
  std::string_view name;
  Kind kind;
  Classes classes;
  std::int16_t code;  ///< the host's number; never changes, so that stored ones keep their meaning
};

/// A place in the catalogue, from 0.
using Index = std::size_t;

inline constexpr std::size_t max_parameters = 128;

std::span<const Parameter> parameters() noexcept;

/// Regardless of case; nothing for a name that isn't in the catalogue.
std::optional<Index> find(std::string_view name) noexcept;

/// False for a number that no tool class has.
bool is_tool_class(std::int32_t tool_class) noexcept;

/// The parameters of a tool class, in the catalogue's order; the class has to be one.
std::span<const std::uint8_t> parameters_of(std::int32_t tool_class) noexcept;

/// The place of a parameter among `parameters_of(tool_class)`; nothing where the class doesn't have it.
std::optional<std::size_t> slot_of(std::int32_t tool_class, Index parameter) noexcept;

// The parameters that the model itself reads.
extern const Index tool_style, tool_id, tool_number, turret_id, station_id, tool_shift_x, tool_shift_y,
    tool_shift_z;

}  // namespace deskhost::catalogue
