#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "deskhost/inspect/report.h"
#include "deskhost/inspect/tool_file.h"
#include "deskhost/inspect/watch.h"

namespace deskhost::inspect {

/// The field of the tool export file that a parameter of a tool is filled from, by its name.
std::optional<std::size_t> field_of_parameter(std::string_view name);
/// The same for a custom property.
std::optional<std::size_t> field_of_property(std::string_view name);

/// A value as a reader sees it; nothing for one that was never written.
std::optional<std::string> text_of(const automation::Value& value);

/// Compares both documents and fills the report's tools and machine. `lines` and `watched` go in step;
/// `materials` has the names of the knowledge base's cutter materials by their identifiers.
void find_changes(const std::vector<DataLine>& lines, const std::vector<WatchedLine>& watched,
                  const std::map<std::string, std::string>& materials, Report& report);

}  // namespace deskhost::inspect
