#pragma once

#include "deskhost/inspect/report.h"
#include "deskhost/inspect/trial.h"

namespace deskhost::inspect {

/// Reads the files, runs the trial, and says what came of it. Throws as Trial does.
Report examine(const Options& options, const Loader& load);

}  // namespace deskhost::inspect
