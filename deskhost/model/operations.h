#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

#include "deskhost/model/collection.h"
#include "deskhost/model/tools.h"

namespace deskhost {

/// Members: ToolSettings, Duration. It doesn't follow a tool whose ToolID changes.
class Operation final : public DeskObject {
 public:
  /// `number` counts from 1; without an id, reading it fails.
  Operation(int number, std::optional<std::string> tool_id, double duration,
            const std::shared_ptr<Tools>& tools);

  [[nodiscard]] std::string trace_name() const override;
  automation::Value get(automation::Member member, automation::Args args) override;

  const std::optional<std::string> tool_id;
  const double duration;

 private:
  std::weak_ptr<Tools> tools_;
  int number_;
};

class Operations final : public Collection<Operation> {
 public:
  explicit Operations(std::shared_ptr<Tools> tools) : Collection("Operations"), tools_(std::move(tools)) {}

  void append(std::optional<std::string> tool_id, double duration);
  [[nodiscard]] bool uses(const std::string& tool_id) const { return used_.contains(tool_id); }

 private:
  std::shared_ptr<Tools> tools_;
  std::unordered_set<std::string> used_;
};

}  // namespace deskhost
