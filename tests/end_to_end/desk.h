#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <list>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "deskhost/session/session.h"
#include "host/application.h"
#include "platform/temp_folder.h"

namespace end_to_end {

/// The add-in in a host session of its own, with a shop's folders, an exporter that hands out what the test
/// says, and a user whose messages are kept.
class Desk : public testing::Test {
 protected:
  Desk();
  ~Desk() override;

  /// A session with the add-in connected; `fail_call` as the gate takes it.
  void start(std::uint64_t fail_call = 0);
  /// Ends the session; fails the test where the add-in left something behind.
  void end();
  /// Opens a document that is written to a file first.
  void open(const nlohmann::json& document);
  /// What the next exporter writes; each line gets CR LF.
  void exporter_writes(const std::vector<std::string>& lines);
  /// What the next exporter writes is that file of the folder.
  void exporter_hands_out(const std::string& name);
  /// The instructions of a program are those of `make_program`.
  void exporter_runs(const std::string& instructions);
  void program(const std::string& name, const std::string& instructions);
  /// The file beside the add-in from which it reads its settings.
  void settings(const std::string& text);
  void import() { session->command(1); }

  [[nodiscard]] host::Document document() const;
  [[nodiscard]] host::Tool tool(const std::string& id) const { return document().Tools().Item(id); }
  /// A parameter of the tool of that id as text; "<none>" where it has no such parameter.
  [[nodiscard]] std::string value(const std::string& id, const std::string& parameter) const;
  [[nodiscard]] std::vector<std::string> tool_ids() const;
  /// The trace so far, a line each.
  [[nodiscard]] std::vector<nlohmann::json> trace() const;
  /// The number of the first call in the trace that `matches`; 0 for none.
  template <class Matches>
  [[nodiscard]] std::uint64_t call_number(Matches&& matches) const {
    for (const nlohmann::json& line : trace()) {
      if (line.contains("n") && matches(line)) return line["n"];
    }
    return 0;
  }

  testing_support::TempFolder folder;
  std::vector<std::string> messages;
  std::vector<std::string> failures;
  /// "Document.IsToolUsed": fails at every call.
  std::set<std::string> refused;
  std::ostringstream trace_text;
  std::optional<deskhost::Session> session;

 private:
  std::list<testing_support::WithVariable> variables_;
  std::unique_ptr<testing_support::Otherwise> hive_ = testing_support::with_own_registry(folder.file(""));
  std::unique_ptr<testing_support::Otherwise> numbers_ = testing_support::with_decimal_sign('.');
  std::filesystem::path settings_file_;
};

/// A data line of the export file: fields by position, the others empty.
std::string export_line(const std::vector<std::pair<std::size_t, std::string>>& fields);

}  // namespace end_to_end
