#pragma once

#include "deskhost/console/text_table.h"
#include "deskhost/knowledgebase/base.h"

namespace deskhost {

/// What is in a base, in aligned tables: the rows of each table, the tools by group, the speeds and
/// feeds by material. Throws Failure.
Page show_base(Base& base);

}  // namespace deskhost
