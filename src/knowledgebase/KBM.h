#pragma once

#include <string>

#include "host/tool.h"

/// Fills the host's knowledge base from the tool database. Each procedure makes a KnowledgeBase of its own at
/// first need and gives it up at its end; nothing but rows outlives a call.
namespace KBM {

/// The knowledge base's identifier of a cutting material, which is made where no standard has one of that
/// name. Throws Failure.
std::string GetCutterMaterialId(const std::string& name);

/// Puts a tool with all its parameters into the group "Quorvex - " + `tool_group`. Throws Failure while the
/// group and the tool are looked for and made; from then on a failing statement is dropped.
void StoreToolInKnowledgeBase(const host::ToolParameters& tool, const std::string& tool_group);

/// Brings the speeds and feeds of the knowledge-base exchange file into the knowledge base and marks the
/// cutter material of the document's tools. A failure is shown and ends the run; the lines before it stay
/// stored.
void ImportSpeedsAndFeeds();

}  // namespace KBM
