#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <unordered_set>
#include <vector>

#include "deskhost/inspect/report.h"
#include "deskhost/inspect/watch.h"

namespace deskhost::inspect {

/// What an inspection is asked for. What isn't named isn't there: an empty document, an empty exchange file,
/// no models, an empty knowledge base, the settings that lie beside the component.
struct Options {
  std::string file;
  std::string document;
  std::string exchange_file;
  std::string knowledge_base;
  std::string settings;
  std::string models;
  std::string component;
};

/// The bytes of what was asked for.
struct GivenBytes {
  std::string tools;
  std::string exchange;
  std::string document;  ///< of standard input; empty where the document is a file, or none
};

/// Makes the add-in's maker from a component's file, as a host loads it.
using Loader = std::function<std::function<automation::Ref()>(const std::string& file)>;

class NotLoaded : public std::runtime_error {
 public:
  using runtime_error::runtime_error;
};

/// An import on copies of everything, in a folder of its own; the user's files are read and no more.
class Trial {
 public:
  /// Runs the import. Throws WrongUse for a file that can't be read, DocumentFileError for such a document,
  /// NotLoaded for such a component, Failure where the trial can't be set up.
  Trial(const Options& options, const GivenBytes& given, const Loader& load);
  ~Trial();
  Trial(const Trial&) = delete;
  Trial& operator=(const Trial&) = delete;

  std::shared_ptr<const Document> before, after;
  Watch watch{{}};
  std::vector<TableRows> tables;
  std::map<std::string, std::string> materials;  ///< names of cutter materials by identifiers, afterwards
  std::vector<std::string> messages;
  std::vector<std::string> failures;  ///< texts

  /// The identifiers of the tools that a tool list of the document would have, found by writing one.
  std::set<std::string> listed();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace deskhost::inspect
