#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "deskhost/model/tool.h"
#include "deskhost/session/gate.h"

namespace deskhost::inspect {

/// Something that a line asked for and that didn't come about.
struct Refusal {
  enum class Why {
    no_such_parameter,  ///< the tool's class doesn't have it
    refused,            ///< the host takes no such value
    not_converted,      ///< the add-in itself couldn't make a value of the text
  };
  Why why;
  std::string name;  ///< of the parameter or the custom property
  bool is_property = false;
  std::optional<std::string> value = {};  ///< that was offered, where one was
};

/// What the calls of one line came to.
struct WatchedLine {
  std::shared_ptr<const Tool> tool;
  bool is_new = false;
  std::vector<Refusal> refusals;
  /// The reference of the station by which the tool's shift was brought up to date, where it was asked for.
  std::optional<std::int32_t> station_reference;
  /// The name of the cutter material that was made for the line.
  std::optional<std::string> material_made;
  /// The material's identifier couldn't be had.
  bool material_failed = false;
};

/// What a line of the exchange file came to.
struct WatchedSpeed {
  bool is_added = false;  ///< else a row was written anew
  bool is_equal = false;  ///< a row with all the same values stood there already
};

/// Hears the calls of one import and sorts them by the line that they belong to: lines come one after the
/// other, and each begins its writes with the tool's style.
class Watch {
 public:
  /// `rows` are the speeds and feeds that stand in the base before, as `key_of_row` tells them.
  explicit Watch(std::unordered_multiset<std::string> rows) : rows_(std::move(rows)) {}

  void hear(const EndedCall& call);

  /// In the order of the file's data lines; a line that the import didn't get to isn't there.
  std::vector<WatchedLine> lines;
  /// In the order of the exchange file's data lines.
  std::vector<WatchedSpeed> speeds;
  /// The class that the host has no tools of was asked for behind the last of the lines.
  bool class_refused = false;
  bool reached_end = false;                   ///< of the tool export file
  std::uint64_t parameters_written_anew = 0;  ///< rows of the knowledge base

 private:
  void hear_tool(const EndedCall& call);
  void hear_parameter(const EndedCall& call);
  void hear_speeds(const EndedCall& call);
  void begin_line(const Tool& tool);
  void settle_item();
  void refuse(Refusal refusal);

  std::unordered_multiset<std::string> rows_;
  bool is_made_ = false;  // the tool of the next line was
  std::optional<std::string> material_;
  std::optional<std::string> asked_for_;  // a parameter that nothing was done with yet
};

/// The values of a speed and feed row but its identifier, in a text for comparing.
std::string key_of_row(const std::vector<automation::Value>& values);

}  // namespace deskhost::inspect
