#include "deskhost/model/operations.h"

namespace deskhost {

using automation::Args;
using automation::Error;
using automation::Failure;
using automation::id;
using automation::Member;
using automation::Value;

namespace {

/// The one parameter that an operation without a tool shows.
class LoneToolId final : public DeskObject {
 public:
  LoneToolId(std::string trace_name, std::optional<std::string> tool_id)
      : trace_name_(std::move(trace_name)), tool_id_(std::move(tool_id)) {}
  [[nodiscard]] std::string trace_name() const override { return trace_name_; }

  Value get(Member member, Args args) override {
    switch (member.id()) {
      case id("Value"):
        if (!tool_id_) throw Failure(Error::invalid_argument);
        return *tool_id_;
      case id("Code"):
        return catalogue::parameters()[catalogue::tool_id].code;
      default:
        return DeskObject::get(member, args);
    }
  }

 private:
  std::string trace_name_;
  std::optional<std::string> tool_id_;
};

class LoneSettings final : public DeskObject {
 public:
  LoneSettings(std::string trace_name, std::optional<std::string> tool_id)
      : trace_name_(std::move(trace_name)), tool_id_(std::move(tool_id)) {}
  [[nodiscard]] std::string trace_name() const override { return trace_name_; }

  Value get(Member member, Args args) override {
    switch (member.id()) {
      case id("Count"):
        return std::int32_t{1};
      case id("Item"): {
        const Value& key = argument(args, 0);
        const std::string* name = key.text();
        if (name == nullptr) {
          index_of(key, 1);
        } else if (catalogue::find(*name) != catalogue::tool_id) {
          throw Failure(Error::invalid_argument);
        }
        return Value(std::make_shared<LoneToolId>(trace_name_ + ".ToolID", tool_id_));
      }
      default:
        return DeskObject::get(member, args);
    }
  }

 private:
  std::string trace_name_;
  std::optional<std::string> tool_id_;
};

}  // namespace

Operation::Operation(int number, std::optional<std::string> id_text, double seconds,
                     const std::shared_ptr<Tools>& tools)
    : tool_id(std::move(id_text)), duration(seconds), tools_(tools), number_(number) {}

std::string Operation::trace_name() const {
  return "Operation(" + std::to_string(number_) + ")";
}

Value Operation::get(Member member, Args args) {
  switch (member.id()) {
    case id("Duration"):
      return duration;
    case id("ToolSettings"): {
      const auto tools = tools_.lock();
      if (auto tool = tools && tool_id ? tools->find_by_id(*tool_id) : nullptr) return Value(std::move(tool));
      return Value(std::make_shared<LoneSettings>(trace_name() + ".ToolSettings", tool_id));
    }
    default:
      return DeskObject::get(member, args);
  }
}

void Operations::append(std::optional<std::string> tool_id, double duration) {
  if (tool_id) used_.insert(*tool_id);
  const int number = static_cast<int>(items.size()) + 1;
  items.push_back(std::make_shared<Operation>(number, std::move(tool_id), duration, tools_));
}

}  // namespace deskhost
