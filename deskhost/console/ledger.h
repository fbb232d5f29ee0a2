#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "deskhost/model/document.h"
#include "deskhost/session/gate.h"

namespace deskhost {

/// What happened in a session, or in one command of it.
struct Counts {
  std::size_t lines = 0;          ///< of tool export files that reached a tool
  std::size_t lines_in_file = 0;  ///< data lines of those files
  std::size_t tools_new = 0, tools_changed = 0;
  std::size_t values_refused = 0;  ///< values other than "" that a parameter didn't take
  std::size_t list_rows = 0;
  std::size_t list_left_out = 0;  ///< tools of the document that aren't in the list
  std::size_t message_boxes = 0;
  std::size_t programs_failed = 0;
  std::size_t empty_files = 0;  ///< imports that met no tool, exports whose list has no row
};

/// Counts what happens by what the host sees: calls at the gate, the document before and behind a command,
/// and the files that a command leaves.
class Ledger {
 public:
  /// A host call that is about to be made; true where it begins a line's tool.
  bool observe(CallKind kind, const automation::Object& target, automation::Member member);
  void refused(const automation::Object& target, const automation::Value& value);
  void message_box() { ++counts_.message_boxes; }
  void program_failed() { ++counts_.programs_failed; }

  /// Around a run of the add-in's command; `document` may be null.
  void before_command(std::int32_t number, const Document* document);
  void after_command(std::int32_t number, const Document* document);
  /// The data lines of the file that the running import reads.
  std::size_t lines_in_file();

  [[nodiscard]] const Counts& counts() const noexcept { return counts_; }

 private:
  void count_tools(const Document* document);
  void count_list(const Document* document);

  Counts counts_;
  std::map<int, std::uint64_t> before_;  // by the tool's number in the session
  std::vector<std::string> names_before_;
  std::filesystem::file_time_type list_before_;
  std::size_t lines_before_ = 0;
  bool is_importing_ = false;
  bool is_file_counted_ = false;
  std::size_t file_lines_ = 0;
};

/// "3 tools new": a line or more for a reader, without what didn't happen.
std::string text_of(const Counts& counts);
nlohmann::ordered_json json_of(const Counts& counts);

}  // namespace deskhost
