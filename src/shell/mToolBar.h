#pragma once

#include <string>

#include "host/user_interface.h"

/// Keeps where the user put the add-in's toolbar, in three registry values of the current user. Failures are
/// skipped statement by statement; nothing is reported.
namespace mToolBar {

/// Puts the toolbar back where `save` found it. A position from 0 to 4 ends visible; any other one leaves the
/// toolbar alone.
void restore(const host::ToolBar& tool_bar, const std::string& add_in_name);
void save(const host::ToolBar& tool_bar, const std::string& add_in_name);

}  // namespace mToolBar
