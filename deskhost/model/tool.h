#pragma once

#include <bitset>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "deskhost/model/catalogue.h"
#include "deskhost/model/custom_properties.h"

namespace deskhost {

class Tools;

/// A tool, which is its own ToolParameters view too. Members: Name, Style, Number, Turret, Station,
/// ToolShiftX, ToolShiftY, ToolShiftZ, CustomProperties, Kind, Flag, Count, Item(parameter name, or number
/// from 1).
class Tool final : public DeskObject {
 public:
  /// A tool that stands in no document; its ToolStyle is its class. Throws Failure for a class that isn't
  /// one.
  static std::shared_ptr<Tool> make(Desk& desk, std::int32_t tool_class);
  Tool(Desk& desk, std::int32_t tool_class);

  [[nodiscard]] std::string trace_name() const override;
  automation::Value get(automation::Member member, automation::Args args) override;
  void put(automation::Member member, automation::Args args, const automation::Value& value) override;

  /// The tool's order of appearance in the session, from 1.
  [[nodiscard]] int session_number() const noexcept { return session_number_; }
  [[nodiscard]] std::int32_t tool_class() const noexcept { return class_; }
  /// The text of ToolID.
  [[nodiscard]] std::string name() const;
  [[nodiscard]] bool flag() const noexcept { return flag_; }
  void set_flag(bool flag) noexcept { flag_ = flag; }
  /// Made at first need.
  CustomProperties& custom_properties();
  /// Null where nothing asked for them yet.
  [[nodiscard]] const CustomProperties* existing_custom_properties() const noexcept {
    return custom_properties_.get();
  }

  /// Empty where it was never written or the class doesn't have it.
  [[nodiscard]] const automation::Value& value(catalogue::Index parameter) const noexcept;
  /// By name, regardless of case; empty for a name that the tool doesn't have.
  [[nodiscard]] const automation::Value& value(std::string_view name) const noexcept;
  /// Writes a parameter that the class has and, for a tool of a document, raises OnModify. Throws Failure for
  /// a value that the parameter refuses; nothing has changed then.
  void write(catalogue::Index parameter, const automation::Value& value);
  /// The same without an event.
  void write_quietly(catalogue::Index parameter, const automation::Value& value);

  [[nodiscard]] bool marked(catalogue::Index parameter) const noexcept { return marked_[parameter]; }
  void mark(catalogue::Index parameter, bool marked) noexcept { marked_[parameter] = marked; }

 private:
  friend class Tools;

  automation::Value item(automation::Args args);

  std::weak_ptr<Tools> owner_;
  std::uint64_t order_ = 0;                // rises along the owner's list
  std::vector<automation::Value> values_;  // by slot of the class
  std::bitset<catalogue::max_parameters> marked_;
  std::shared_ptr<CustomProperties> custom_properties_;
  std::int32_t class_;
  int session_number_;
  bool flag_ = false;
  bool is_delivering_ = false;
};

/// Members: Value, Code, ValueMarked.
class ToolParameter final : public DeskObject {
 public:
  /// The tool's class has to have the parameter.
  ToolParameter(std::shared_ptr<Tool> tool, catalogue::Index parameter)
      : tool_(std::move(tool)), parameter_(parameter) {}

  [[nodiscard]] std::string trace_name() const override;
  automation::Value get(automation::Member member, automation::Args args) override;
  void put(automation::Member member, automation::Args args, const automation::Value& value) override;

  [[nodiscard]] catalogue::Index parameter() const noexcept { return parameter_; }

 private:
  std::shared_ptr<Tool> tool_;
  catalogue::Index parameter_;
};

/// The add-in's maker of tools. Member: Create(class, unit).
std::shared_ptr<DeskObject> make_tool_factory(DeskRef desk);

}  // namespace deskhost
