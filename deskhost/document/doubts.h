#pragma once

#include <string>
#include <vector>

#include "deskhost/model/document.h"

namespace deskhost {

/// What a host could have in a document and a user hardly means: each with its path in the document's file.
std::vector<std::string> doubts_about(const Document& document);

}  // namespace deskhost
