#include "import/tool_index.h"

#include <algorithm>

#include "foundation/failures.h"
#include "foundation/tool_identity.h"

namespace mQuorvex {
namespace {

// The text behind the last "#"; an empty identity has no last piece.
std::string identifier(std::string_view identity) {
  if (identity.empty()) throw automation::Failure(automation::Error::subscript_out_of_range);
  return std::string(tool_identity::behind_last_hash(identity));
}

}  // namespace

std::size_t ToolWalk::size() {
  if (!counted_) {
    from_document_ = static_cast<std::size_t>(std::max(0, tools_.Count()));
    counted_ = true;
  }
  return from_document_ + appended_.size();
}

host::Tool ToolWalk::at(std::size_t position) {
  if (position >= from_document_) return appended_.at(position - from_document_);
  return tools_.Item(static_cast<std::int32_t>(position + 1));
}

std::size_t ToolWalk::append(const host::Tool& tool) {
  appended_.push_back(tool);
  return from_document_ + appended_.size() - 1;
}

void ToolIndex::read(std::size_t position) {
  const std::string now = identifier(walk_.at(position).Name());
  if (position == known_.size()) {
    known_.emplace_back();
  } else {
    positions_[known_[position]].erase(position);
  }
  known_[position] = now;
  positions_[now].insert(position);
  unread_.erase(position);
}

ToolIndex::Found ToolIndex::find(std::string_view id) {
  const std::string wanted = identifier(id);
  const std::size_t size = walk_.size();
  const auto match = [&] {
    const auto found = positions_.find(wanted);
    return found == positions_.end() || found->second.empty() ? size : *found->second.begin();
  };
  // The walk reads every tool in front of the match; what was read before needn't be read again.
  while (!unread_.empty() && *unread_.begin() <= match()) read(*unread_.begin());
  while (reached_ < std::min(match(), size)) {
    read(reached_);
    ++reached_;
  }
  const std::size_t position = match();
  if (position == size) return {host::Tool(), position};
  return {walk_.at(position), position};
}

bool NumbersInUse::read(std::size_t position) {
  try {
    const std::int32_t number = walk_.at(position).Number();
    if (position == known_.size()) {
      known_.push_back(number);
    } else {
      count(known_[position], -1);
      known_[position] = number;
    }
    count(number, 1);
    unread_.erase(position);
    return true;
  } catch (const automation::Failure&) {
    return false;
  }
}

void NumbersInUse::count(std::int32_t number, int by) {
  if ((uses_[number] += by) == 0 && number >= 1) full_below_ = std::min(full_below_, number);
}

std::int32_t NumbersInUse::free_from(std::int32_t candidate) const {
  while (true) {
    const auto used = uses_.find(candidate);
    if (used == uses_.end() || used->second == 0) return candidate;
    ++candidate;
  }
}

double NumbersInUse::lowest_free() {
  std::int32_t candidate = 1;
  const std::size_t size = walk_.size();
  // A tool that refuses its number twice would hold the walk for ever; it is left out after the first time.
  std::vector<std::size_t> to_read(unread_.begin(), unread_.end());
  for (std::size_t position = reached_; position < size; ++position) to_read.push_back(position);
  for (const std::size_t position : to_read) {
    if (!read(position)) {
      candidate = free_from(std::max(candidate, full_below_)) + 1;
      if (position == known_.size()) known_.push_back(0);
      unread_.insert(position);
    }
  }
  reached_ = size;
  full_below_ = free_from(full_below_);
  return free_from(std::max(candidate, full_below_));
}

}  // namespace mQuorvex
