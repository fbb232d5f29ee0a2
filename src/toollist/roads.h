#pragma once

#include <string_view>

#include "toollist/operating_times.h"
#include "toollist/skipping.h"

/// The three ways through the tools of a document, each writing rows to the open list file. `skipping` is the
/// export's and stays as a road leaves it; what isn't skipped is thrown as Failure.
namespace mQuorvexList {

/// A switch of the export, "1" where it isn't set; read from the settings at every call, which points the
/// text reader there whatever a message did before.
bool is_on_by_default(std::string_view key);

/// Tools in the order of their first use, each once; begins the skipping at the first operation.
void operation_road(const host::Document& document, OperatingTimes& times, Skipping& skipping);
/// Tools by turret and station, those of one station in the order of the collection.
void station_road(const host::Document& document, OperatingTimes& times, const Skipping& skipping);
/// Tools in the order of the collection; with `DeleteUnusedTools` those without an operation leave the
/// document, with `ExportUnusedTools` off they get no row.
void document_road(const host::Document& document, OperatingTimes& times, const Skipping& skipping);

}  // namespace mQuorvexList
