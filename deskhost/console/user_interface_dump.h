#pragma once

#include <iosfwd>

namespace deskhost {

class Application;

/// Writes commands, menu and toolbars as JSON, two-space indented.
void dump_user_interface(const Application& application, std::ostream& out);

}  // namespace deskhost
