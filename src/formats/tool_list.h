#pragma once

#include <array>

/// What is the same in every tool list file; its lines end with CR LF.
namespace formats::tool_list {

inline constexpr std::array head{"*------- Quorvex MakeList File -------", "FileVersion:\"2.0\"",
                                 "*------- Quorvex tool list -------"};
inline constexpr const char* version = "ToolListVersion:";
/// In front of the code in quotes, or alone.
inline constexpr const char* material_code = "ZEPHAMaterialCode:";
/// In front of the rows, whose columns the second line names.
inline constexpr std::array head_of_rows{"*------- Quorvex tool assemblies -------",
                                         "* Ident; Ver; T; D; H; R; Operating Time; StationID; Orientation",
                                         "Tools:"};

}  // namespace formats::tool_list
