#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "deskhost/check/scenario.h"
#include "deskhost/check/stages.h"

namespace deskhost::check {

/// A run with the steps of the import that it is. Its calls have to outlive it.
struct Run {
  explicit Run(const std::vector<Call>& run) : calls(run), steps(steps_of_import(run)) {}
  const std::vector<Call>& calls;
  std::vector<Step> steps;
};

/// Whether the call at place `i` of `run`, sound or refused, may be missing from the other.
using Leeway = std::function<bool(const Run& run, std::size_t i)>;

/// How a run may differ from the sound one beyond what needs the result of the call at `place`, which was
/// refused in a zone of skipped failures. `sound` has to outlive the result.
Leeway leeway(const Scenario& scenario, const Run& sound, std::size_t place);

bool is_import(const Scenario& scenario);

/// Whether a call is on the parameter of that name, or looks for it.
bool is_parameter(const Call& call, std::string_view name);

}  // namespace deskhost::check
