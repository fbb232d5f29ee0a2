#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "automation/object.h"

namespace deskhost {

/// What all objects of one host session share. Every object keeps it alive.
struct Desk {
  /// Hears a failure that a handler of the add-in handed back; the event itself goes on.
  std::function<void(std::string_view event, std::string_view text)> failure_of_event;
  /// The number of the next tool that appears in the session, from 1: the document's tools first.
  int next_tool_number = 1;
};
using DeskRef = std::shared_ptr<Desk>;

/// An object of the host's model. A member that a class doesn't handle fails.
class DeskObject : public automation::Object, public std::enable_shared_from_this<DeskObject> {
 public:
  /// The object's name in a trace: "Tool(7).ToolDiameter".
  [[nodiscard]] virtual std::string trace_name() const = 0;
  /// The name of the C++ class: "Tool", "CollectionOfTurret".
  [[nodiscard]] std::string type_name() const final;

  automation::Value get(automation::Member member, automation::Args args) override;
  void put(automation::Member member, automation::Args args, const automation::Value& value) override;
  automation::Value call(automation::Member member, automation::Args args) override;
};

/// The model object behind a value that holds one (null for nothing, a failure for anything else). The
/// add-in's values have been unwrapped before they come here.
template <class T>
std::shared_ptr<T> object_argument(const automation::Value& value) {
  const automation::Ref object = value.to_object();
  auto found = std::dynamic_pointer_cast<T>(object);
  if (object && !found) throw automation::Failure(automation::Error::type_mismatch);
  return found;
}

/// The argument at `index` (from 0); a failure where the caller left it out.
automation::Value& argument(automation::Args args, std::size_t index);

/// A length, an angle, a coordinate: a failure also for what a document file can't hold, infinity and what
/// isn't a number.
double finite_number(const automation::Value& value);

}  // namespace deskhost
