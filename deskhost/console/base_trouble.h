#pragma once

#include <string>
#include <utility>

#include "automation/failure.h"
#include "deskhost/session/session.h"

namespace deskhost {

/// Throws WrongUse for a source that can't be a knowledge base whatever is done with it: a folder, a device,
/// a file of another kind, one in a folder that isn't there.
void refuse_what_is_no_base(const std::string& source);

/// What a user is told of a knowledge base whose use failed: what and where, and what to do.
WrongUse trouble_with_base(const std::string& source, const automation::Failure& failure);

/// What `use` makes of `source`. Throws WrongUse where it isn't a knowledge base or can't be used.
template <class Use>
auto with_base(const std::string& source, Use use) {
  refuse_what_is_no_base(source);
  try {
    return use(source);
  } catch (const automation::Failure& failure) {
    throw trouble_with_base(source, failure);
  }
}

}  // namespace deskhost
