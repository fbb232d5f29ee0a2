#pragma once

namespace deskhost {

/// From here on every message box that this thread shows is reported with a line on standard error and closed
/// with OK.
void close_and_report_messages();

}  // namespace deskhost
