#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "deskhost/check/processes.h"

namespace deskhost::check {

struct LevelResult {
  int strictness;
  std::string title;
  Results results;
  double seconds;
};

std::size_t findings_in(const std::vector<LevelResult>& levels);

/// "SET:N" or "SET:N-M", as --only takes it.
std::string checks_of(const Finding& finding);

void write_json(const std::vector<LevelResult>& levels, std::uint64_t seed, std::ostream& out);

/// A suite of one case for each level; a case with findings is one that failed.
void write_junit(const std::vector<LevelResult>& levels, std::ostream& out);

}  // namespace deskhost::check
