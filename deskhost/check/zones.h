#pragma once

#include <vector>

#include "deskhost/check/scenario.h"

/// The zones of what a user does, found in the trace of a sound run by objects and members.
namespace deskhost::check::zones {

std::vector<Zone> connection(const std::vector<Call>& calls);
std::vector<Zone> document_event(const std::vector<Call>& calls);
std::vector<Zone> begin_shutdown(const std::vector<Call>& calls);
std::vector<Zone> import(const std::vector<Call>& calls);
/// With a material the skipping lasts from its line on; without one it ends with that line.
std::vector<Zone> export_with_material(const std::vector<Call>& calls);
/// Without a material, in the order of the operations.
std::vector<Zone> export_by_operations(const std::vector<Call>& calls);
/// Without a material, in the document's order.
std::vector<Zone> export_by_tools(const std::vector<Call>& calls);
std::vector<Zone> all_skipped(const std::vector<Call>& calls);
std::vector<Zone> all_handed_on(const std::vector<Call>& calls);

}  // namespace deskhost::check::zones
