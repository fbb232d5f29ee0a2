#include "deskhost/check/judge.h"

#include <algorithm>
#include <array>

namespace deskhost::check {
namespace {

constexpr std::string_view refusal = "The host refuses the call";
constexpr const char* parameter_message = "Error in GetMachineSetupParameter";

/// How far behind a call in a zone of skipped failures the run may differ from the sound one, beyond what
/// needs the call's result.
enum class Reach {
  statement,
  own,    ///< further calls on the same collection, at once
  tool,   ///< up to the next tool of an import
  event,  ///< up to the event's end
};

struct ReachRow {
  std::string_view on;  // the beginning of the object's name
  std::string_view member;
  Reach reach;
};

// Tests, which count as passed when they fail, and calls whose plain result leads the next statements. The
// first row that fits counts.
constexpr auto reaches = std::to_array<ReachRow>({
    {"ToolBar", "Add", Reach::event},  // buttons go by their number
    {"MenuItem", "", Reach::own},
    {"Application", "Configuration", Reach::own},
    {"Configuration", "", Reach::own},
    {"Application", "Document", Reach::tool},
    {"Document", "MachineType", Reach::tool},
    {"Document", "MachineSetup", Reach::tool},
    {"Document", "MillSetup", Reach::tool},
    {"Document", "UnitSystem", Reach::own},
    {"Document", "IsToolUsed", Reach::tool},
    {"MachineSetup", "Turrets", Reach::tool},
    {"MillSetup", "", Reach::tool},
    {"Turret", "", Reach::tool},
    {"Tools", "", Reach::tool},
    {"Operation", "", Reach::own},
    {"KnowledgeBase", "", Reach::tool},
    {"Database", "", Reach::tool},
    {"Connection", "", Reach::tool},
    {"Recordset", "", Reach::tool},
    {"CuttingToolGroups", "", Reach::tool},
    {"KbTools", "Find", Reach::tool},
    {"KbTools", "Add", Reach::tool},
    {"KbToolParameters", "Find", Reach::tool},
    {"Tool(", "Style", Reach::tool},
    {"Tool(", "Name", Reach::tool},
    {"Tool(", "Number", Reach::tool},
    {"Tool(", "Turret", Reach::tool},
    {"Tool(", "Station", Reach::tool},
    {"Tool(", "Count", Reach::tool},
    {"Tool(", "Kind", Reach::tool},
});

bool told(const ReachRow& row, const Call& call) {
  return call.on.starts_with(row.on) && (row.member.empty() || call.member == row.member);
}

/// Properties are looked up, made anew where their type can't be told, and added where there are none.
bool is_property(const Call& call) {
  return call.on.find("CustomProperties") != std::string::npos || call.member == "CustomProperties";
}

// A tool that didn't get its id isn't found under it.
bool is_tool_id(const Call& call) {
  return call.on.ends_with(".ToolID") || call.args == R"(["ToolID"])" || call.args == R"(["ToolId"])";
}

Reach reach_of(const Call& call) {
  if (is_tool_id(call)) return Reach::tool;
  if (is_property(call)) return Reach::own;
  const auto* const row = std::ranges::find_if(reaches, [&](const ReachRow& r) { return told(r, call); });
  return row == reaches.end() ? Reach::statement : row->reach;
}

// Where the next tool begins, or what follows the last one.
bool begins_tool(const Call& call) {
  return call.args.find("'Quorvex CC'") != std::string::npos || call.member == "Refresh" ||
         (call.on.starts_with("Tool(") && call.member == "Name") || (call.is_event && call.on != "Tools");
}

std::size_t end_of_tool(const std::vector<Call>& calls, std::size_t from) {
  std::size_t end = from;
  while (end < calls.size() && !begins_tool(calls[end])) ++end;
  return end;
}

std::string name_of(const Call& call) {
  return call.op + " " + call.on + (call.member.empty() ? "" : "." + call.member) +
         (call.args.size() > 2 && call.args.size() < 60 ? " " + call.args : "");
}

/// The event that a failure of that call goes back from.
std::string event_at(const SoundRun& sound, std::size_t place) {
  for (std::size_t i = place; i-- > 0;) {
    const Call& call = sound.outcome.calls[i];
    if (call.is_event && call.on != "Tools") return call.member;
  }
  return sound.scenario->connection_call;
}

class Judgement {
 public:
  Judgement(const SoundRun& sound, const Outcome& refused, std::size_t place, bool lasting)
      : sound_(sound), clean_(sound.outcome.calls), refused_(refused), place_(place), lasting_(lasting) {}

  std::vector<std::string> findings() {
    if (!reached()) return {"the call isn't made again: " + name_of(clean_[place_])};
    const Zone zone = sound_.zones[place_];
    const Zone end = lasting_ ? zone_that_ends() : zone;
    told_as(zone, end);
    if (lasting_) return std::move(findings_);
    switch (zone) {
      case Zone::handed_on:
      case Zone::reported:
        nothing_runs();
        break;
      case Zone::end_of_file:
        document_is_refreshed();
        break;
      case Zone::skipped:
      case Zone::told_skipped:
        everything_else_runs();
        break;
    }
    return std::move(findings_);
  }

 private:
  void find(const std::string& what) {
    findings_.push_back(what + " (refused: " + name_of(clean_[place_]) + ")");
  }

  // Up to the refused call both runs are the same.
  bool reached() {
    if (refused_.calls.size() <= place_) return false;
    for (std::size_t i = 0; i <= place_; ++i) {
      if (refused_.calls[i].key != clean_[i].key) return false;
    }
    return refused_.calls[place_].refused;
  }

  /// With every further call refused, the next one that isn't skipped decides.
  Zone zone_that_ends() const {
    for (std::size_t i = place_; i < clean_.size(); ++i) {
      if (clean_[i].is_event) continue;
      const Zone zone = sound_.zones[i];
      if (zone == Zone::end_of_file) return Zone::reported;  // by what follows the file
      if (zone == Zone::handed_on || zone == Zone::reported) return zone;
    }
    return Zone::skipped;
  }

  void told_as(Zone zone, Zone end) {
    const bool handed_on = end == Zone::handed_on;
    if (handed_on && refused_.failures.size() != 1) {
      find(std::to_string(refused_.failures.size()) + " failures handed back instead of one");
    }
    if (!handed_on && !refused_.failures.empty()) find("handed back: " + refused_.failures.front());
    if (handed_on && !refused_.failures.empty() && zone == end &&
        refused_.failures.front() != event_at(sound_, place_) + ": " + std::string(refusal)) {
      find("handed back as: " + refused_.failures.front());
    }
    messages_as(zone, end);
  }

  void messages_as(Zone zone, Zone end) {
    std::size_t own = 0, parameters = 0;
    for (const std::string& message : refused_.messages) {
      if (message.starts_with(refusal)) ++own;
      if (message == parameter_message) ++parameters;
    }
    const std::size_t expected = end == Zone::reported ? 1 : 0;
    if (own != expected)
      find(std::to_string(own) + " messages of the refusal instead of " + std::to_string(expected));
    if (!lasting_ && parameters != (zone == Zone::told_skipped ? 1U : 0U)) {
      find(std::to_string(parameters) + " messages of a machine parameter");
    }
  }

  void nothing_runs() {
    for (std::size_t i = place_ + 1; i < refused_.calls.size(); ++i) {
      const Call& call = refused_.calls[i];
      if (call.is_event && call.on != "Tools") return;
      if (!call.is_event) return find("a statement runs behind the end: " + name_of(call));
    }
  }

  void document_is_refreshed() {
    std::vector<std::string> next;
    for (std::size_t i = place_ + 1; i < refused_.calls.size() && next.size() < 2; ++i) {
      next.push_back(refused_.calls[i].on + "." + refused_.calls[i].member);
    }
    if (next != std::vector<std::string>{"Application.Document", "Document.Refresh"}) {
      find("the document isn't refreshed");
    }
    for (const Call& call : refused_.calls) {
      if (call.op == "create" && call.on.ends_with("ToolFactory")) find("a tool is made");
    }
  }

  void everything_else_runs() {
    Reach reach = reach_of(clean_[place_]);
    const bool is_import = std::string_view(sound_.scenario->name).starts_with("import");
    if (reach == Reach::tool && !is_import) reach = Reach::event;
    if (reach == Reach::event) return;
    const Difference found = difference(clean_, refused_.calls, place_ + 1);
    const std::vector<bool> needs = dependents(clean_, place_);
    const std::size_t clean_end = end_of_reach(reach, clean_);
    const std::size_t refused_end = end_of_reach(reach, refused_.calls);
    for (const std::size_t i : found.missing) {
      const Call& call = clean_[i];
      if (!needs[i] && i >= clean_end && !call.is_event) {
        return find("a statement doesn't run: " + name_of(call));
      }
    }
    for (const std::size_t i : found.extra) {
      const Call& call = refused_.calls[i];
      if (i >= refused_end && !is_made_again(call) && !call.is_event) {
        return find("a statement runs beyond the sound run's: " + name_of(call));
      }
    }
  }

  [[nodiscard]] std::size_t end_of_reach(Reach reach, const std::vector<Call>& calls) const {
    constexpr std::size_t at_once = 8;
    if (reach == Reach::own) return place_ + at_once;
    return reach == Reach::tool ? end_of_tool(calls, place_ + 1) : place_ + 1;
  }

  /// A value that couldn't be had may be asked for again, from the beginning of its statement.
  [[nodiscard]] bool is_made_again(const Call& call) const {
    constexpr std::size_t near = 3;
    for (std::size_t i = place_ - std::min(place_, near); i <= place_; ++i) {
      if (clean_[i].key == call.key) return true;
    }
    return false;
  }

  const SoundRun& sound_;
  const std::vector<Call>& clean_;
  const Outcome& refused_;
  std::size_t place_;
  bool lasting_;
  std::vector<std::string> findings_;
};

}  // namespace

std::vector<std::string> judge(const SoundRun& sound, const Outcome& refused, std::size_t call,
                               bool lasting) {
  return Judgement(sound, refused, sound.calls[call], lasting).findings();
}

}  // namespace deskhost::check
