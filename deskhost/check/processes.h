#pragma once

#include <cstddef>
#include <iosfwd>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "deskhost/check/runner.h"

namespace deskhost::check {

/// A stretch of a set's checks, from `first` to before `end`.
struct Batch {
  const Set* set = nullptr;
  std::size_t first = 0;
  std::size_t end = 0;
};

struct Finding {
  std::string set;
  std::size_t first = 0, end = 0;  ///< the checks that show it
  std::string text;
};

struct Counts {
  std::uint64_t checks = 0, single = 0, lasting = 0;
};

struct Results {
  std::vector<Finding> findings;
  Counts counts;
};

/// Runs every check of the sets, or those of `only`, each batch in a process of its own and two at a time. A
/// process that ends or hangs before it is through is a finding of the check that it was at, and the checks
/// behind that one run in another process.
Results run_in_processes(const std::vector<Set>& sets, const std::optional<Batch>& only, const Place& place);

/// Does what such a process is started for, and tells it to `out`; false where the arguments aren't those of
/// one.
bool do_batch_told(const std::vector<std::string>& arguments, const std::vector<Set>& sets, const Load& load,
                   std::ostream& out);

}  // namespace deskhost::check
