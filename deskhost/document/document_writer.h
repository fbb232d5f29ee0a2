#pragma once

#include <iosfwd>

#include "deskhost/model/document.h"

namespace deskhost {

/// Writes the document as JSON, all keys. Throws NotUtf8 for a text that isn't UTF-8.
void write_document(const Document& document, std::ostream& out);

}  // namespace deskhost
