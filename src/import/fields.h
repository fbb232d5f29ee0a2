#pragma once

#include <cstddef>

/// The fields of a data line that the import treats in a way of their own, by position from 0.
namespace mQuorvex {

enum Field : std::size_t {
  field_tool_style = 0,
  field_tool_class = 1,
  field_tool_id = 2,
  field_tool_number = 3,
  field_tool_material = 5,
  field_orientation_code = 15,
  field_taper_angle = 29,
  field_orientation = 41,
  field_lathe_tool_orientation = 84,
  field_turret_id = 88,
  field_station_id = 89,
  field_tool_shift_x = 90,
  field_tool_shift_y = 91,
  field_tool_shift_z = 92,
  field_length_comp_register = 93,
  field_tool_group = 101,
  field_user_model_flag = 102,
};

/// A data line has at least that many; what stands behind them is ignored.
inline constexpr std::size_t field_count = 127;

}  // namespace mQuorvex
