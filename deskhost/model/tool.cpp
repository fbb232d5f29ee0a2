#include "deskhost/model/tool.h"

#include "deskhost/model/index.h"
#include "deskhost/model/tools.h"

namespace deskhost {

using automation::Args;
using automation::Error;
using automation::Failure;
using automation::id;
using automation::Member;
using automation::Value;

namespace {

const Value never_written;

/// The properties of a tool that are parameters too.
std::optional<catalogue::Index> shift_parameter(Member member) {
  switch (member.id()) {
    case id("ToolShiftX"):
      return catalogue::tool_shift_x;
    case id("ToolShiftY"):
      return catalogue::tool_shift_y;
    case id("ToolShiftZ"):
      return catalogue::tool_shift_z;
    default:
      return std::nullopt;
  }
}

class ToolFactory final : public DeskObject {
 public:
  explicit ToolFactory(DeskRef desk) : desk_(std::move(desk)) {}
  [[nodiscard]] std::string trace_name() const override { return "ToolFactory"; }

  Value call(Member member, Args args) override {
    if (member.id() != id("Create")) return DeskObject::call(member, args);
    const auto tool_class = argument(args, 0).to_int32();
    static_cast<void>(argument(args, 1).to_int32());
    return Value(Tool::make(*desk_, tool_class));
  }

 private:
  DeskRef desk_;
};

}  // namespace

std::shared_ptr<Tool> Tool::make(Desk& desk, std::int32_t tool_class) {
  if (!catalogue::is_tool_class(tool_class)) throw Failure(Error::invalid_argument);
  return std::make_shared<Tool>(desk, tool_class);
}

Tool::Tool(Desk& desk, std::int32_t tool_class)
    : values_(catalogue::parameters_of(tool_class).size()),
      class_(tool_class),
      session_number_(desk.next_tool_number++) {
  write_quietly(catalogue::tool_style, tool_class);
}

std::string Tool::trace_name() const {
  return "Tool(" + std::to_string(session_number_) + ")";
}

Value Tool::get(Member member, Args args) {
  switch (member.id()) {
    case id("Item"):
      return item(args);
    case id("Name"):
      return name();
    case id("Style"):
      return value(catalogue::tool_style).to_int32();
    case id("Number"):
      return value(catalogue::tool_number).to_int32();
    case id("Turret"):
      return value(catalogue::turret_id).to_int32();
    case id("Station"):
      return value(catalogue::station_id).to_int32();
    case id("CustomProperties"):
      return Value(custom_properties().shared_from_this());
    case id("Count"):
      return static_cast<std::int32_t>(values_.size());
    case id("Kind"):
      return static_cast<std::int16_t>(class_);
    case id("Flag"):
      return flag_;
    default:
      if (const auto shift = shift_parameter(member)) return value(*shift).to_double();
      return DeskObject::get(member, args);
  }
}

void Tool::put(Member member, Args args, const Value& value) {
  if (member.id() == id("Flag")) {
    flag_ = value.to_bool();
  } else if (const auto shift = shift_parameter(member)) {
    write(*shift, value);
  } else {
    DeskObject::put(member, args, value);
  }
}

Value Tool::item(Args args) {
  const Value& key = argument(args, 0);
  catalogue::Index parameter = 0;
  if (const std::string* parameter_name = key.text()) {
    const auto found = catalogue::find(*parameter_name);
    if (!found || !catalogue::slot_of(class_, *found)) throw Failure(Error::invalid_argument);
    parameter = *found;
  } else {
    parameter = catalogue::parameters_of(class_)[index_of(key, values_.size())];
  }
  return Value(
      std::make_shared<ToolParameter>(std::static_pointer_cast<Tool>(shared_from_this()), parameter));
}

std::string Tool::name() const {
  return value(catalogue::tool_id).to_text();
}

CustomProperties& Tool::custom_properties() {
  if (!custom_properties_) custom_properties_ = std::make_shared<CustomProperties>(session_number_);
  return *custom_properties_;
}

const Value& Tool::value(catalogue::Index parameter) const noexcept {
  const auto slot = catalogue::slot_of(class_, parameter);
  return slot ? values_[*slot] : never_written;
}

const Value& Tool::value(std::string_view name) const noexcept {
  const auto parameter = catalogue::find(name);
  return parameter ? value(*parameter) : never_written;
}

void Tool::write(catalogue::Index parameter, const Value& value) {
  const auto tools = owner_.lock();
  if (!tools) return write_quietly(parameter, value);
  const std::string old_name = name();
  write_quietly(parameter, value);
  tools->raise_modified(*this, old_name);
}

void Tool::write_quietly(catalogue::Index parameter, const Value& value) {
  const auto slot = catalogue::slot_of(class_, parameter);
  if (!slot) throw Failure(Error::invalid_argument);
  Value kept = catalogue::converted(catalogue::parameters()[parameter].kind, value);
  const auto tools = parameter == catalogue::tool_id ? owner_.lock() : nullptr;
  if (!tools) {
    values_[*slot] = std::move(kept);
    return;
  }
  const std::string old_id = name();
  values_[*slot] = std::move(kept);
  tools->renamed(*this, old_id);
}

std::string ToolParameter::trace_name() const {
  return tool_->trace_name() + "." + std::string(catalogue::parameters()[parameter_].name);
}

Value ToolParameter::get(Member member, Args args) {
  switch (member.id()) {
    case id("Value"):
      return tool_->value(parameter_);
    case id("Code"):
      return catalogue::parameters()[parameter_].code;
    case id("ValueMarked"):
      return tool_->marked(parameter_);
    default:
      return DeskObject::get(member, args);
  }
}

void ToolParameter::put(Member member, Args args, const Value& value) {
  switch (member.id()) {
    case id("Value"):
      return tool_->write(parameter_, value);
    case id("ValueMarked"):
      return tool_->mark(parameter_, value.to_bool());
    default:
      return DeskObject::put(member, args, value);
  }
}

std::shared_ptr<DeskObject> make_tool_factory(DeskRef desk) {
  return std::make_shared<ToolFactory>(std::move(desk));
}

}  // namespace deskhost
