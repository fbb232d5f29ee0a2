#include "deskhost/check/zones.h"

#include <algorithm>

namespace deskhost::check::zones {
namespace {

bool is(const Call& call, std::string_view on, std::string_view member) {
  return !call.is_event && call.on == on && call.member == member;
}

bool raises(const Call& call, std::string_view event) {
  return call.is_event && call.member == event;
}

bool is_tool(const Call& call) {
  return call.on.starts_with("Tool(");
}

std::vector<Zone> all(const std::vector<Call>& calls, Zone zone) {
  return std::vector<Zone>(calls.size(), zone);
}

/// Walks over the calls with a zone in hand; `step` may change it before the call gets it.
template <class Step>
std::vector<Zone> walk(const std::vector<Call>& calls, Zone zone, Step&& step) {
  std::vector<Zone> zones;
  for (std::size_t i = 0; i < calls.size(); ++i) {
    step(i, zone);
    zones.push_back(zone);
  }
  return zones;
}

// The text of the next statement for the knowledge base.
std::string_view next_statement(const std::vector<Call>& calls, std::size_t from) {
  for (std::size_t i = from; i < calls.size(); ++i) {
    if (calls[i].member == "Execute") return calls[i].args;
  }
  return {};
}

/// Which part of an import a call belongs to.
class ImportWalk {
 public:
  explicit ImportWalk(const std::vector<Call>& calls) : calls_(calls) {}

  void step(std::size_t i, Zone& zone) {
    const Call& call = calls_[i];
    if (raises(call, "OnCommandUI")) {
      zone = Zone::skipped;
    } else if (raises(call, "OnCommand")) {
      zone = Zone::handed_on;
      bound_ = false;
    } else if (part_ == Part::start && is(call, "Application", "Document") && zone == Zone::handed_on) {
      // The first one binds the document, the second one is the import's own.
      if (bound_) zone = Zone::reported;
      bound_ = true;
    } else if (call.op == "create" && call.on.ends_with("KnowledgeBase")) {
      knowledge_base(i, zone);
    } else if (part_ == Part::material && (call.on == "Tools" || is_tool(call) || call.op == "create")) {
      enter(Part::find, Zone::handed_on, zone);
    } else if (part_ == Part::find && is_tool(call) && call.args == R"(["ToolStyle"])") {
      enter(Part::build, Zone::skipped, zone);
    } else if (part_ == Part::speeds) {
      speeds(i, zone);
    }
    if (is(call, "Document", "Refresh")) refreshed_ = true;
  }

 private:
  enum class Part { start, material, find, build, speeds };

  void enter(Part part, Zone part_zone, Zone& zone) {
    part_ = part;
    zone = part_zone;
  }
  void knowledge_base(std::size_t i, Zone& zone) {
    if (refreshed_) return enter(Part::speeds, Zone::reported, zone);
    if (next_statement(calls_, i).find("'Quorvex CC'") == std::string_view::npos) return;
    enter(Part::material, part_ == Part::start ? Zone::end_of_file : Zone::skipped, zone);
  }
  // An entry in the material index that fails is there already; from the closing check on failures are
  // skipped.
  void speeds(std::size_t i, Zone& zone) {
    if (zone == Zone::skipped && !index_entry_) return;
    index_entry_ = calls_[i].args.find("insert into tblPartMaterialIndex") != std::string::npos;
    zone = index_entry_ ? Zone::skipped : Zone::reported;
    if (i > 0 && is(calls_[i - 1], "Document", "CustomProperties")) zone = Zone::skipped;
  }

  const std::vector<Call>& calls_;
  Part part_ = Part::start;
  bool bound_ = false;
  bool refreshed_ = false;
  bool index_entry_ = false;
};

// Machine parameters tell the user themselves and go on.
bool is_machine_parameter(const Call& call) {
  return call.member == "SetupKind" || call.member == "MillSetup" || call.on == "MillSetup" ||
         call.member == "ProgramNumber" || call.member == "ProgramName" || call.on == "Programs" ||
         call.on.starts_with("Program(") || is(call, "MachineSetup", "Programs") ||
         call.member.starts_with("CustomSetting") || is(call, "Document", "Name");
}

std::vector<Zone> export_zones(const std::vector<Call>& calls, bool has_material) {
  bool parameters = true;
  bool in_row = false;
  return walk(calls, Zone::handed_on, [&](std::size_t i, Zone& zone) {
    const Call& call = calls[i];
    if (raises(call, "OnCommandUI")) zone = Zone::skipped;
    if (raises(call, "OnCommand")) zone = Zone::handed_on;
    if (call.args == R"(["KBM_StandardName"])") zone = Zone::skipped;
    if (is(call, "Document", "MachineType")) parameters = false;
    if (parameters && (is_machine_parameter(call) || is(call, "Document", "MachineSetup"))) {
      zone = Zone::told_skipped;
    } else if (zone == Zone::told_skipped) {
      zone = has_material && i > 0 ? Zone::skipped : Zone::handed_on;
    }
    if (has_material || zone == Zone::told_skipped) return;
    if (!parameters && !in_row) zone = Zone::handed_on;
    // Operations are read statement by statement, and from the first one on a row skips too.
    if (call.member == "ToolSettings" || call.member == "Duration") in_row = true;
    if (in_row) zone = Zone::skipped;
    if (is(call, "Document", "IsToolUsed") || (is_tool(call) && call.member == "Name")) {
      in_row = false;
      zone = Zone::handed_on;
    }
    if (is_tool(call) && call.args == R"(["ToolID"])") in_row = true;
    if (in_row) zone = Zone::skipped;
  });
}

}  // namespace

std::vector<Zone> all_skipped(const std::vector<Call>& calls) {
  return all(calls, Zone::skipped);
}
std::vector<Zone> all_handed_on(const std::vector<Call>& calls) {
  return all(calls, Zone::handed_on);
}

std::vector<Zone> connection(const std::vector<Call>& calls) {
  return walk(calls, Zone::handed_on, [&](std::size_t i, Zone& zone) {
    if (i > 0 && calls[i - 1].member == "SubMenu") zone = Zone::skipped;
  });
}

std::vector<Zone> document_event(const std::vector<Call>& calls) {
  return all(calls, Zone::handed_on);
}

std::vector<Zone> begin_shutdown(const std::vector<Call>& calls) {
  return walk(calls, Zone::handed_on, [&](std::size_t i, Zone& zone) {
    if (i > 0 && calls[i - 1].member == "Attach") zone = Zone::skipped;
  });
}

std::vector<Zone> import(const std::vector<Call>& calls) {
  ImportWalk import_walk(calls);
  std::vector<Zone> zones =
      walk(calls, Zone::handed_on, [&](std::size_t i, Zone& zone) { import_walk.step(i, zone); });
  // The document is asked for in front of its refresh.
  for (std::size_t i = 1; i < calls.size(); ++i) {
    if (is(calls[i], "Document", "Refresh")) zones[i] = zones[i - 1] = Zone::skipped;
  }
  return zones;
}

std::vector<Zone> export_with_material(const std::vector<Call>& calls) {
  return export_zones(calls, true);
}
std::vector<Zone> export_without_material(const std::vector<Call>& calls) {
  return export_zones(calls, false);
}

}  // namespace deskhost::check::zones
