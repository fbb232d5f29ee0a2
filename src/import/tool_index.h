#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/tool.h"

namespace mQuorvex {

/// The tools of a document in the order in which a walk over the collection meets them. Each is fetched when
/// a walk first reaches it; tools that the import adds are appended. Lives for one run.
class ToolWalk {
 public:
  explicit ToolWalk(host::Tools tools) : tools_(std::move(tools)) {}

  /// Asks the host for the number of tools once, at the first walk.
  [[nodiscard]] std::size_t size();
  /// `position` from 0. Throws Failure where the host refuses the tool.
  [[nodiscard]] host::Tool at(std::size_t position);
  /// A tool that was put at the end of the collection; gives its position.
  std::size_t append(const host::Tool& tool);

 private:
  host::Tools tools_;
  bool counted_ = false;
  std::size_t from_document_ = 0;
  std::vector<host::Tool> appended_;
};

/// What FindToolById's walk over all tools would find, without walking again for each line: the identifier of
/// each tool is kept, and is read again from the host after a line has changed the tool. A tool whose name
/// can't be read or is empty fails the search exactly when the walk would reach it before a match.
class ToolIndex {
 public:
  explicit ToolIndex(ToolWalk& walk) : walk_(walk) {}

  struct Found {
    host::Tool tool;
    std::size_t position;
  };
  /// The first tool whose identifier behind the last "#" is that of `id`; a view of nothing for none. Throws
  /// Failure (subscript out of range) for an empty id, and what the walk would throw.
  Found find(std::string_view id);
  /// The tool at that position was changed or appended.
  void changed(std::size_t position) {
    if (position < reached_) unread_.insert(position);
  }

 private:
  void read(std::size_t position);

  ToolWalk& walk_;
  std::size_t reached_ = 0;         // tools below have been read at least once
  std::set<std::size_t> unread_;    // of those, the ones to read again
  std::vector<std::string> known_;  // identifier by position
  std::unordered_map<std::string, std::set<std::size_t>> positions_;
};

/// The numbers in use, for automatic numbering: gives the lowest free number that the walk over all tools
/// would give, reading each tool's number once and again after a line has changed the tool.
class NumbersInUse {
 public:
  explicit NumbersInUse(ToolWalk& walk) : walk_(walk) {}

  /// The lowest number from 1 that no tool has. A number that can't be read counts as equal to the candidate,
  /// as a test that fails does.
  double lowest_free();
  void changed(std::size_t position) {
    if (position < reached_) unread_.insert(position);
  }

 private:
  /// False where the host refuses the number.
  bool read(std::size_t position);
  void count(std::int32_t number, int by);
  [[nodiscard]] std::int32_t free_from(std::int32_t candidate) const;

  ToolWalk& walk_;
  std::size_t reached_ = 0;
  std::set<std::size_t> unread_;
  std::vector<std::int32_t> known_;  // number by position
  std::unordered_map<std::int32_t, int> uses_;
  std::int32_t full_below_ = 1;  // every number from 1 up to here is in use
};

}  // namespace mQuorvex
