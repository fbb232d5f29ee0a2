#include "deskhost/inspect/watch.h"

#include <typeinfo>

#include "deskhost/knowledgebase/schema.h"
#include "deskhost/model/document.h"
#include "deskhost/session/trace.h"

namespace deskhost::inspect {

using automation::id;
using automation::Value;

namespace {

/// The target as one of that class, or null.
template <class T>
const T* as(const EndedCall& call) {
  return typeid(call.target) == typeid(T) ? static_cast<const T*>(&call.target) : nullptr;
}

const std::string* text_argument(const EndedCall& call) {
  return call.args.empty() ? nullptr : call.args[0].text();
}

std::string key_of_record(const automation::Record& record) {
  std::vector<Value> values;
  for (const Column& column : tables::speed_feed_data.columns) {
    if (column.member != nullptr && column.kind != ColumnKind::id) values.push_back(record.at(column.member));
  }
  return key_of_row(values);
}

}  // namespace

std::string key_of_row(const std::vector<Value>& values) {
  std::string key;
  for (const Value& value : values) key += value.to_text() + '\n';
  return key;
}

void Watch::hear(const EndedCall& call) {
  if (reached_end) {
    if (call.kind == CallKind::call) hear_speeds(call);
    return;
  }
  if (as<Tool>(call) != nullptr) {
    hear_tool(call);
  } else if (as<ToolParameter>(call) != nullptr) {
    hear_parameter(call);
  } else if (const auto* property = as<CustomProperty>(call)) {
    if (call.put != nullptr && call.refusal != nullptr) {
      refuse({Refusal::Why::refused, property->name(), true, call.put->to_text()});
    }
  } else if (as<Station>(call) != nullptr) {
    const bool is_reference = call.member.id() == id("ToolReference") && call.kind == CallKind::get;
    if (is_reference && call.result != nullptr && !lines.empty()) {
      lines.back().station_reference = call.result->to_int32();
    }
  } else if (as<Document>(call) != nullptr) {
    reached_end = call.kind == CallKind::call && call.member.id() == id("Refresh");
  } else if (call.kind == CallKind::call) {
    const std::string on = trace_name_of(call.target);
    if (on == "ToolFactory") {
      is_made_ = call.refusal == nullptr;
      class_refused = !is_made_;
    } else if (on == "CutterMaterials" && call.refusal == nullptr) {
      material_ = call.args[0].to_record()->at("Name").to_text();
    } else if (on == "KbToolParameters" && call.member.id() == id("Update") && call.refusal == nullptr) {
      parameters_written_anew += call.args[0].to_array().size();
    }
  }
}

void Watch::hear_tool(const EndedCall& call) {
  const std::string* const name = call.member.id() == id("Item") ? text_argument(call) : nullptr;
  if (name == nullptr) return;
  settle_item();
  if (*name == "ToolStyle") begin_line(static_cast<const Tool&>(call.target));
  if (call.refusal != nullptr) {
    refuse({Refusal::Why::no_such_parameter, *name});
  } else {
    asked_for_ = *name;
  }
}

void Watch::hear_parameter(const EndedCall& call) {
  asked_for_.reset();
  if (call.put == nullptr || lines.empty()) return;
  const catalogue::Index parameter = static_cast<const ToolParameter&>(call.target).parameter();
  const std::string_view name = catalogue::parameters()[parameter].name;
  if (call.refusal != nullptr) refuse({Refusal::Why::refused, std::string(name), false, call.put->to_text()});
  const std::string* const text = call.put->text();
  if (name == "ToolMaterial" && text != nullptr && text->empty()) lines.back().material_failed = true;
}

void Watch::hear_speeds(const EndedCall& call) {
  const bool is_written = call.member.id() == id("Add") || call.member.id() == id("Update");
  if (!is_written || call.refusal != nullptr || trace_name_of(call.target) != "SpeedFeedRows") return;
  std::string key = key_of_record(*call.args[0].to_record());
  const bool is_added = call.member.id() == id("Add");
  speeds.push_back({is_added, is_added && rows_.contains(key)});
  if (is_added) rows_.insert(std::move(key));
}

// A line's first write; what came of its material and its class was heard before.
void Watch::begin_line(const Tool& tool) {
  WatchedLine& line = lines.emplace_back();
  line.tool = std::static_pointer_cast<const Tool>(tool.shared_from_this());
  line.is_new = std::exchange(is_made_, false);
  line.material_made = std::exchange(material_, std::nullopt);
}

// A parameter that was fetched and then neither written nor read: there was no value to write.
void Watch::settle_item() {
  if (!asked_for_) return;
  refuse({Refusal::Why::not_converted, *asked_for_});
  asked_for_.reset();
}

void Watch::refuse(Refusal refusal) {
  if (lines.empty()) return;
  // A parameter that is offered twice with one value is refused twice.
  for (const Refusal& known : lines.back().refusals) {
    if (known.name == refusal.name && known.is_property == refusal.is_property &&
        known.value == refusal.value)
      return;
  }
  lines.back().refusals.push_back(std::move(refusal));
}

}  // namespace deskhost::inspect
