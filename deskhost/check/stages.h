#pragma once

#include <vector>

#include "deskhost/check/calls.h"

namespace deskhost::check {

/// What an import is at.
enum class Stage {
  start,
  material,  ///< of a line: its identifier in the knowledge base
  find,      ///< the tool of a line is looked for, or made
  build,     ///< its parameters
  add,       ///< it comes into the document
  follow,    ///< its shift, its solid, its shape
  store,     ///< it comes into the knowledge base
  speeds,    ///< behind the last line and the document's refresh
};

struct Step {
  Stage stage = Stage::start;
  int line = 0;  ///< data lines so far, from 1
};

/// The step of each call of an import, told by objects and members.
std::vector<Step> steps_of_import(const std::vector<Call>& calls);

}  // namespace deskhost::check
