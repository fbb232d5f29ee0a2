#pragma once

#include "deskhost/console/text_table.h"

namespace deskhost {

class Document;

/// The document: its tools, its machine setup, its solids and its operations in aligned tables.
Page show_document(const Document& document);

}  // namespace deskhost
