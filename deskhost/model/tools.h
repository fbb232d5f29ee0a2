#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "automation/event_hub.h"
#include "deskhost/model/tool.h"

namespace deskhost {

/// A parameter value that a user's change asked for and the tool refuses. Nothing has changed.
class RefusedValue : public std::runtime_error {
 public:
  RefusedValue(std::string parameter_name, std::string refused_value, std::string reason, std::string advice);
  std::string name;
  std::string value;
  std::string why;
  std::string hint;
};

/// The tools of a document. Members: Count, Item(index from 1, or ToolID text), _NewEnum, Add(tool),
/// Remove(ToolID text). Events: OnCreate(tool), OnDelete(tool), OnModify(old name, 0, tool).
class Tools final : public DeskObject {
 public:
  explicit Tools(DeskRef desk) : desk_(std::move(desk)) {}

  [[nodiscard]] std::string trace_name() const override { return "Tools"; }
  automation::Value get(automation::Member member, automation::Args args) override;
  automation::Value call(automation::Member member, automation::Args args) override;
  automation::Events* events() noexcept override { return &hub_; }

  [[nodiscard]] std::size_t size() const noexcept { return list_.size(); }
  /// `place` counts from 0 and has to be below `size`.
  [[nodiscard]] const std::shared_ptr<Tool>& at(std::size_t place) const { return list_[place]; }
  [[nodiscard]] const std::vector<std::shared_ptr<Tool>>& all() const noexcept { return list_; }
  /// The first tool in order whose ToolID is that text; null where there is none.
  [[nodiscard]] std::shared_ptr<Tool> find_by_id(std::string_view tool_id) const;

  /// Puts a tool at the end, without an event. Throws Failure for one that stands in a document.
  void append(const std::shared_ptr<Tool>& tool);
  /// The same and OnCreate.
  void add(const std::shared_ptr<Tool>& tool);
  /// OnDelete, then the tool goes; nothing for a tool that isn't here.
  void remove(const std::shared_ptr<Tool>& tool);

  /// The user deletes a tool.
  void user_delete(const std::shared_ptr<Tool>& tool) { remove(tool); }
  /// The user changes parameters of a tool, each a name and a value as typed: all of them and one OnModify,
  /// or a RefusedValue and nothing.
  void user_modify(const std::shared_ptr<Tool>& tool,
                   const std::vector<std::pair<std::string, std::string>>& changes);

 private:
  friend class Tool;

  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept {
      return std::hash<std::string_view>{}(text);
    }
  };

  void raise(automation::Member event, Tool& tool, std::span<automation::Value> args);
  void raise_modified(Tool& tool, const std::string& old_name);
  void renamed(Tool& tool, std::string_view old_id);
  void enter_index(Tool& tool);
  void leave_index(const Tool& tool, std::string_view id);
  void take_out(const Tool& tool);

  DeskRef desk_;
  automation::EventHub hub_;
  std::vector<std::shared_ptr<Tool>> list_;
  // For each ToolID its tools, in the list's order.
  std::unordered_map<std::string, std::vector<Tool*>, TextHash, std::equal_to<>> by_id_;
  std::uint64_t next_order_ = 1;
};

}  // namespace deskhost
