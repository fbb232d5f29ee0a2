#include "deskhost/session/trace.h"

#include <ostream>

#include "deskhost/model/desk_object.h"

namespace deskhost {

using automation::Args;
using automation::Value;
using Json = nlohmann::ordered_json;

namespace {

Json to_json(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::Empty:
    case Value::Kind::Nothing:
    case Value::Kind::Missing:
      return nullptr;
    case Value::Kind::Bool:
      return value.to_bool();
    case Value::Kind::I2:
    case Value::Kind::I4:
      return value.to_int32();
    case Value::Kind::R8:
      return value.to_double();
    case Value::Kind::Text:
      return *value.text();
    case Value::Kind::Object:
      return {{"object", trace_name_of(*value.to_object())}};
    case Value::Kind::Record: {
      const auto record = value.to_record();
      Json json = {{"record", record->type}};
      for (const auto& [name, member] : record->members) json[name] = to_json(member);
      return json;
    }
    case Value::Kind::Array: {
      Json json = Json::array();
      for (const Value& element : value.to_array()) json.push_back(to_json(element));
      return json;
    }
  }
  return nullptr;
}

void add_arguments(Json& line, Args args, const Value* put) {
  Json values = Json::array();
  Json types = Json::array();
  const auto add = [&](const Value& value) {
    values.push_back(to_json(value));
    types.push_back(name_of(value.kind()));
  };
  for (const Value& value : args) add(value);
  if (put) add(*put);
  line["args"] = std::move(values);
  line["types"] = std::move(types);
}

}  // namespace

std::string trace_name_of(const automation::Object& object) {
  const auto* named = dynamic_cast<const DeskObject*>(&object);
  return named ? named->trace_name() : "Object";
}

std::size_t Trace::begin(const Call& call, Args args, const Value* put) {
  Json line;
  line["n"] = call.n;
  line["op"] = call.op;
  line["on"] = call.on;
  line["member"] = call.member;
  add_arguments(line, args, put);
  lines_.push_back(std::move(line));
  ++open_;
  return lines_.size() - 1;
}

void Trace::end(std::size_t line, const Value& result) {
  lines_[line]["result"] = to_json(result);
  finish();
}

void Trace::fail(std::size_t line, std::string_view text) {
  lines_[line]["error"] = text;
  finish();
}

void Trace::event(std::string_view on, std::string_view member, Args args) {
  Json line;
  line["op"] = "event";
  line["on"] = on;
  line["member"] = member;
  add_arguments(line, args, nullptr);
  lines_.push_back(std::move(line));
  ++open_;
  finish();
}

void Trace::finish() {
  if (--open_ > 0) return;
  for (const Json& line : lines_) *out_ << line.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
  lines_.clear();
}

}  // namespace deskhost
