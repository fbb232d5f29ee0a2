#pragma once

#include <filesystem>
#include <list>
#include <string>
#include <vector>

#include "deskhost/system/leftover.h"
#include "deskhost/system/other_value.h"

namespace deskhost::inspect {

/// A shop of a trial's own, in a temporary folder to which the environment leads as long as this lives: the
/// component with its settings and texts, the folders, and programs that do nothing but hand the tool export
/// file over. What the component says on standard error is kept, and nobody is waited for on standard input.
class TrialShop {
 public:
  /// `settings` and `models` name the user's, or are empty. Throws Failure.
  TrialShop(const std::string& component, const std::string& settings, const std::string& models);
  ~TrialShop();
  TrialShop(const TrialShop&) = delete;
  TrialShop& operator=(const TrialShop&) = delete;

  /// What the exporter hands out, and what lies beside it.
  void write_exchange_files(const std::string& tool_file, const std::string& exchange_file) const;
  [[nodiscard]] std::string component() const;
  [[nodiscard]] std::string file(const std::string& name) const { return (folder_.path() / name).string(); }
  /// Whether the exporter ran.
  [[nodiscard]] bool was_exported() const;
  /// The tool list; empty where none was written.
  [[nodiscard]] std::string tool_list() const;
  /// The texts of the message boxes so far.
  [[nodiscard]] std::vector<std::string> messages() const;

 private:
  class OtherFile;

  Leftover folder_;
  std::string component_name_;
  std::list<OtherValue> variables_;
  std::list<OtherFile> files_;
};

}  // namespace deskhost::inspect
