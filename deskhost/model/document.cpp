#include "deskhost/model/document.h"

#include "deskhost/model/events.h"

namespace deskhost {

using automation::Args;
using automation::Error;
using automation::Failure;
using automation::id;
using automation::Member;
using automation::Value;

Document::Document(DeskRef desk, std::string name_text)
    : name(std::move(name_text)),
      desk_(std::move(desk)),
      tools_(std::make_shared<Tools>(desk_)),
      operations_(std::make_shared<Operations>(tools_)),
      custom_properties_(std::make_shared<CustomProperties>(0)),
      simulation_(std::make_shared<Simulation>(desk_)) {}

Value Document::get(Member member, Args args) {
  switch (member.id()) {
    case id("Name"):
      return name;
    case id("Tools"):
      return Value(tools_);
    case id("Simulation"):
      return Value(simulation_);
    case id("MachineType"):
      return machine_type;
    case id("SetupKind"):
      return setup_kind;
    case id("UnitSystem"):
      return unit_system;
    case id("MachineSetup"):
      return Value(machine_setup);
    case id("MillSetup"):
      return Value(mill_setup);
    case id("CustomProperties"):
      return Value(custom_properties_);
    case id("Operations"):
      return Value(operations_);
    default:
      return DeskObject::get(member, args);
  }
}

Value Document::call(Member member, Args args) {
  switch (member.id()) {
    case id("Refresh"):
      ++refreshes_;
      return {};
    case id("IsToolUsed"): {
      const auto tool = object_argument<Tool>(argument(args, 0));
      if (!tool) throw Failure(Error::object_not_set);
      return operations_->uses(tool->name());
    }
    default:
      return DeskObject::call(member, args);
  }
}

void Document::raise_before_close() {
  const auto self = shared_from_this();
  raise_reported(*desk_, hub_, "BeforeDocumentClose", {});
}

}  // namespace deskhost
