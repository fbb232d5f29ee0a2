#include "deskhost/check/zones.h"

#include <algorithm>

#include "deskhost/check/stages.h"

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

/// The zones of an import, step by step.
class ImportWalk {
 public:
  explicit ImportWalk(const std::vector<Call>& calls) : calls_(calls), steps_(steps_of_import(calls)) {}

  void step(std::size_t i, Zone& zone) {
    switch (steps_[i].stage) {
      case Stage::start:
        return start(calls_[i], zone);
      case Stage::material:
        zone = steps_[i].line == 1 ? Zone::end_of_file : Zone::skipped;
        return;
      case Stage::find:
        zone = Zone::handed_on;
        return;
      case Stage::build:
      case Stage::add:
      case Stage::follow:
      case Stage::store:
        zone = Zone::skipped;
        return;
      case Stage::speeds:
        return speeds(i, zone);
    }
  }

 private:
  void start(const Call& call, Zone& zone) {
    if (raises(call, "OnCommandUI")) zone = Zone::skipped;
    if (raises(call, "OnCommand")) zone = Zone::handed_on;
    if (!is(call, "Application", "Document") || zone != Zone::handed_on) return;
    // The first one binds the document, the second one is the import's own.
    if (bound_) zone = Zone::reported;
    bound_ = true;
  }
  // An entry in the material index that fails is there already; from the closing check on failures are
  // skipped.
  void speeds(std::size_t i, Zone& zone) {
    if (closing_check_) return;
    closing_check_ = is(calls_[i - 1], "Document", "CustomProperties");
    const bool index_entry = calls_[i].args.find("insert into tblPartMaterialIndex") != std::string::npos;
    zone = index_entry || closing_check_ ? Zone::skipped : Zone::reported;
  }

  const std::vector<Call>& calls_;
  std::vector<Step> steps_;
  bool bound_ = false;
  bool closing_check_ = false;
};

// Machine parameters tell the user themselves and go on.
bool is_machine_parameter(const Call& call) {
  return call.member == "SetupKind" || call.member == "MillSetup" || call.on == "MillSetup" ||
         call.member == "ProgramNumber" || call.member == "ProgramName" || call.on == "Programs" ||
         call.on.starts_with("Program(") || is(call, "MachineSetup", "Programs") ||
         call.member.starts_with("CustomSetting") || is(call, "Document", "Name");
}

bool is_of_row(const Call& call) {
  return call.member == "ToolSettings" || call.member == "Duration" ||
         (is_tool(call) && call.args == R"(["ToolID"])");
}

/// The zones up to the road; `behind_material` is that of what follows the material's line.
class HeaderWalk {
 public:
  explicit HeaderWalk(Zone behind_material) : behind_material_(behind_material) {}

  /// False where the road has begun, whose zone is then `behind_material`.
  bool step(const Call& call, Zone& zone) {
    if (raises(call, "OnCommandUI")) zone = Zone::skipped;
    if (raises(call, "OnCommand")) zone = Zone::handed_on;
    in_material_ = in_material_ || call.args == R"(["KBM_StandardName"])";
    if (is(call, "Document", "MachineType")) on_road_ = true;
    if (on_road_) return false;
    if (is_machine_parameter(call) || is(call, "Document", "MachineSetup")) {
      zone = Zone::told_skipped;
      behind_ = in_material_;
    } else if (in_material_) {
      zone = behind_ ? behind_material_ : Zone::skipped;
    } else if (zone == Zone::told_skipped) {
      zone = Zone::handed_on;
    }
    return true;
  }

 private:
  Zone behind_material_;
  bool in_material_ = false, behind_ = false, on_road_ = false;
};

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
  HeaderWalk header(Zone::skipped);
  return walk(calls, Zone::handed_on, [&](std::size_t i, Zone& zone) {
    if (!header.step(calls[i], zone)) zone = Zone::skipped;
  });
}

std::vector<Zone> export_by_operations(const std::vector<Call>& calls) {
  HeaderWalk header(Zone::handed_on);
  bool skips = false;
  return walk(calls, Zone::handed_on, [&](std::size_t i, Zone& zone) {
    if (header.step(calls[i], zone)) return;
    skips = skips || calls[i].on.starts_with("Operation(");
    zone = skips ? Zone::skipped : Zone::handed_on;
  });
}

std::vector<Zone> export_by_tools(const std::vector<Call>& calls) {
  HeaderWalk header(Zone::handed_on);
  bool skips = false, deletes = false;
  return walk(calls, Zone::handed_on, [&](std::size_t i, Zone& zone) {
    const Call& call = calls[i];
    if (header.step(call, zone)) return;
    // Operations are read statement by statement, and from the first one on a row skips too; so does the
    // care of a tool that is deleted, which ends with a question for the kind of the machine.
    const bool deleted = deletes && is(calls[i - 1], "Document", "MachineType");
    if (is(call, "Document", "IsToolUsed") || deleted) skips = deletes = false;
    if (raises(call, "OnDelete")) deletes = true;
    if (is_of_row(call) || deletes) skips = true;
    zone = skips ? Zone::skipped : Zone::handed_on;
  });
}

}  // namespace deskhost::check::zones
