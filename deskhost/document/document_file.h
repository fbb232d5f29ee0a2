#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include "deskhost/model/document.h"

namespace deskhost {

/// A document file that can't be read or written. `what()` tells the file, the line where it is known, the
/// path in the document and what is wrong there; `hint` what to do.
class DocumentFileError : public std::runtime_error {
 public:
  DocumentFileError(const std::string& what, std::string hint_text)
      : std::runtime_error(what), hint(std::move(hint_text)) {}
  std::string hint;
};

/// The document in `file` ("-": standard input), with all its objects. Throws DocumentFileError; no tool has
/// appeared then.
std::shared_ptr<Document> load_document(const std::string& file, const DeskRef& desk);

/// Writes the document beside `file` and then in its place: the file is the old one or the whole new one.
/// Throws DocumentFileError.
void save_document(const Document& document, const std::string& file);

}  // namespace deskhost
