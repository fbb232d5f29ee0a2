#pragma once

#include <iosfwd>

#include "deskhost/knowledgebase/base.h"

namespace deskhost {

/// Prints what is in a base, in aligned tables: the rows of each table, the tools by group, the speeds and
/// feeds by material. Throws Failure.
void show_base(Base& base, std::ostream& out);

}  // namespace deskhost
