#pragma once

#include <string>

#include "deskhost/knowledgebase/base.h"

namespace deskhost {

/// A temporary copy of the base that `source` names, as an SQLite file of the name `file`: what `source`
/// names is read and no more. With an empty source a new base. Throws Failure where there is none or it can't
/// be read.
BaseSource copy_of_base(const std::string& source, const std::string& file);

}  // namespace deskhost
