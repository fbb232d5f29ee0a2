#pragma once

#include <span>
#include <vector>

#include "deskhost/check/calls.h"
#include "deskhost/check/sitting.h"

namespace deskhost::check {

/// What becomes of a host call that fails.
enum class Zone {
  handed_on,     ///< the event ends, and its failure goes back to the host
  reported,      ///< one message, and the event ends
  end_of_file,   ///< the import goes on behind the last line of its file
  skipped,       ///< the next statement runs
  told_skipped,  ///< one message, and the next statement runs
};

/// Something that a user does, from the first to the last host call that it leads to.
struct Scenario {
  const char* name;
  const char* document;  ///< of the shop, opened or preloaded
  const char* settings;
  void (*prepare)(Sitting& sitting);
  void (*act)(Sitting& sitting);
  /// The zone of every call of a sound run; that of an event means nothing.
  std::vector<Zone> (*zones)(const std::vector<Call>& calls);
  /// Which call of the connection interface fails where no event has been raised.
  const char* connection_call = "";
  bool new_knowledge_base = false;
};

std::span<const Scenario> import_scenarios();
std::span<const Scenario> other_scenarios();

}  // namespace deskhost::check
