#pragma once

#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <stdexcept>
#include <string>

#include "deskhost/model/document.h"

namespace deskhost {

/// A place in a document that can't stand so. `what()` says what is wrong, `path` where ("Tools[3].Class";
/// empty for the document as a whole).
class BadPlace : public std::runtime_error {
 public:
  BadPlace(std::string path_text, const std::string& what, std::string hint_text)
      : std::runtime_error(what), path(std::move(path_text)), hint(std::move(hint_text)) {}
  std::string path;
  std::string hint;
};

/// The document that `json` describes. Throws BadPlace.
std::shared_ptr<Document> read_document(const nlohmann::ordered_json& json, const DeskRef& desk);

}  // namespace deskhost
