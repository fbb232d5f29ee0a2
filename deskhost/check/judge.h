#pragma once

#include <string>
#include <vector>

#include "deskhost/check/scenario.h"

namespace deskhost::check {

/// A scenario's sound run, and the judgement of a run in which a call was refused.
struct SoundRun {
  const Scenario* scenario = nullptr;
  Outcome outcome;
  std::vector<Zone> zones;
  std::vector<std::size_t> calls;  ///< places in the trace that are calls and no events
};

/// What the refused run did otherwise than it should; `call` is the refused call's number from 0.
std::vector<std::string> judge(const SoundRun& sound, const Outcome& refused, std::size_t call, bool lasting);

}  // namespace deskhost::check
