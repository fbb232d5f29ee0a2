#pragma once

#include <iosfwd>

namespace deskhost {

class Document;

/// Prints the document for a reader: its tools, its machine setup and its solids in aligned tables.
void show_document(const Document& document, std::ostream& out);

}  // namespace deskhost
