#pragma once

#include <cstdint>
#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "automation/object.h"

namespace deskhost {

/// The name of a model object as a trace has it; "Object" for a class that has none.
std::string trace_name_of(const automation::Object& object);

/// Writes calls and events in the order in which they begin: what happens inside a call stands behind it, so
/// lines are held back until the outermost call has ended.
class Trace {
 public:
  explicit Trace(std::ostream& out) : out_(&out) {}

  struct Call {
    std::uint64_t n;
    const char* op;
    std::string_view on;
    std::string_view member;
  };
  /// Arguments as the model sees them. The result identifies the line for `end`.
  std::size_t begin(const Call& call, automation::Args args, const automation::Value* put);
  void end(std::size_t line, const automation::Value& result);
  void fail(std::size_t line, std::string_view text);
  void event(std::string_view on, std::string_view member, automation::Args args);

 private:
  void finish();

  std::ostream* out_;
  std::vector<nlohmann::ordered_json> lines_;
  std::size_t open_ = 0;
};

}  // namespace deskhost
