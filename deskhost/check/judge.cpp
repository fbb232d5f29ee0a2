#include "deskhost/check/judge.h"

#include <algorithm>
#include <array>
#include <functional>

#include "deskhost/check/stages.h"

namespace deskhost::check {
namespace {

constexpr std::string_view refusal = "The host refuses the call";
constexpr const char* parameter_message = "Error in GetMachineSetupParameter";
/// So many calls of a statement and those that ask again for what it didn't get.
constexpr std::size_t at_once = 8;

/// How far behind a call in a zone of skipped failures a run that is no import may differ from the sound one,
/// beyond what needs the call's result.
enum class Reach { statement, own, event };

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
    {"Application", "Document", Reach::event},
    {"Document", "MachineType", Reach::event},
    {"Document", "MachineSetup", Reach::event},
    {"Document", "MillSetup", Reach::event},
    {"Document", "UnitSystem", Reach::own},
    {"Document", "IsToolUsed", Reach::event},
    {"MachineSetup", "Turrets", Reach::event},
    {"MillSetup", "", Reach::event},
    {"Turret", "", Reach::event},
    {"Tools", "", Reach::event},
    {"Operation", "", Reach::own},
    {"Tool(", "Style", Reach::event},
    {"Tool(", "Name", Reach::event},
    {"Tool(", "Number", Reach::event},
    {"Tool(", "Turret", Reach::event},
    {"Tool(", "Station", Reach::event},
    {"Tool(", "Count", Reach::event},
    {"Tool(", "Kind", Reach::event},
    {"Tool(", "ToolShift", Reach::event},
});

bool told(const ReachRow& row, const Call& call) {
  return call.on.starts_with(row.on) && call.member.starts_with(row.member);
}

/// Properties are looked up, made anew where their type can't be told, and added where there are none.
bool is_property(const Call& call) {
  return call.on.find("CustomProperties") != std::string::npos || call.member == "CustomProperties";
}

bool is_parameter(const Call& call, std::string_view name) {
  return call.on.ends_with("." + std::string(name)) || call.args == "[\"" + std::string(name) + "\"]";
}

/// What the steps behind a tool's parameters go by.
bool leads(const Call& call) {
  constexpr std::array<std::string_view, 7> names{"ToolStyle",     "Orientation", "LatheToolOrientation",
                                                  "TurretID",      "StationID",   "ToolNumber",
                                                  "CustomSetting6"};
  return is_property(call) ||
         std::ranges::any_of(names, [&](std::string_view name) { return is_parameter(call, name); });
}

Reach reach_of(const Call& call) {
  if (is_parameter(call, "ToolID")) return Reach::event;
  if (is_property(call)) return Reach::own;
  const auto* const row = std::ranges::find_if(reaches, [&](const ReachRow& r) { return told(r, call); });
  return row == reaches.end() ? Reach::statement : row->reach;
}

/// A run with the steps of the import that it is.
struct Run {
  explicit Run(const std::vector<Call>& run) : calls(run), steps(steps_of_import(run)) {}
  const std::vector<Call>& calls;
  std::vector<Step> steps;
};

/// Where an import in which call `place` was refused may differ from the sound one.
class ImportLeeway {
 public:
  ImportLeeway(const Run& sound, std::size_t place)
      : place_(place),
        refused_(sound.calls[place]),
        at_(sound.steps[place]),
        tool_(tool_before(sound, place)) {}

  [[nodiscard]] bool covers(const Run& run, std::size_t i) const {
    const Step& here = run.steps[i];
    if (i < end_of_region(run)) return true;
    // What a parameter leads comes behind all of them.
    if (at_.stage == Stage::build && leads(refused_))
      return here.line == at_.line && here.stage == Stage::follow;
    // What didn't come into the document is missed by every later search.
    if (at_.stage == Stage::add) return run.calls[i].on == "Tools" || run.calls[i].on.starts_with(tool_);
    if (at_.stage == Stage::follow) return run.calls[i].on.starts_with("Turret(");
    return false;
  }

 private:
  static std::string tool_before(const Run& run, std::size_t place) {
    while (place > 0 && !run.calls[place].on.starts_with("Tool(")) --place;
    return run.calls[place].on.substr(0, run.calls[place].on.find(')') + 1);
  }

  // A solid's properties are written each by itself.
  [[nodiscard]] bool is_of_solid() const {
    return refused_.op == "put" && refused_.on.find(".Solid(") != std::string::npos;
  }

  [[nodiscard]] std::size_t end_of_region(const Run& run) const {
    switch (at_.stage) {
      case Stage::material:
      case Stage::store:
        return first(run, [&](std::size_t i) { return run.steps[i].stage != at_.stage; });
      case Stage::add:
        return first(run, [&](std::size_t i) { return run.steps[i].line != at_.line; });
      case Stage::follow:
        if (is_of_solid()) return place_ + 1;
        // The shape is refreshed whatever became of shift and solid.
        return first(run, [&](std::size_t i) {
          return run.steps[i].stage != at_.stage || run.calls[i].member == "RefreshToolShape";
        });
      case Stage::speeds:
        return refused_.args.find("insert into") == std::string::npos ? run.calls.size() : place_ + 1;
      case Stage::start:
      case Stage::find:
      case Stage::build:
        break;
    }
    return leads(refused_) || reach_of(refused_) != Reach::statement ? place_ + at_once : place_ + 1;
  }

  template <class Test>
  [[nodiscard]] std::size_t first(const Run& run, const Test& test) const {
    std::size_t i = place_ + 1;
    while (i < run.calls.size() && !test(i)) ++i;
    return i;
  }

  std::size_t place_;
  const Call& refused_;
  Step at_;
  std::string tool_;
};

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
      : sound_(sound),
        clean_(sound.outcome.calls),
        refused_(refused),
        clean_run_(clean_),
        refused_run_(refused.calls),
        place_(place),
        lasting_(lasting) {}

  std::vector<std::string> findings() {
    if (!reached()) return {"the call isn't made again: " + name_of(clean_[place_])};
    if (leaves_tool_nameless()) return {};
    const Zone zone = sound_.zones[place_];
    const Zone end = lasting_ ? zone_that_ends() : zone;
    told_as(zone, end);
    if (lasting_ && end != zone) return std::move(findings_);
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
        if (!lasting_) everything_else_runs();
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

  /// A new tool that doesn't get its identity stays without one, and the next search fails on it.
  [[nodiscard]] bool leaves_tool_nameless() const {
    return is_import() && clean_run_.steps[place_].stage == Stage::build &&
           is_parameter(clean_[place_], "ToolID");
  }

  /// With every further call refused, the next one that isn't skipped decides.
  Zone zone_that_ends() const {
    for (std::size_t i = place_; i < clean_.size(); ++i) {
      if (clean_[i].is_event) continue;
      // A material that can't be asked for is none, and with none the skipping ends.
      if (is_export() && is_parameter(clean_[i], "KBM_StandardName")) return Zone::handed_on;
      const Zone zone = sound_.zones[i];
      if (zone == Zone::end_of_file) return Zone::reported;  // by what follows the file
      if (zone == Zone::handed_on || zone == Zone::reported) return zone;
    }
    return Zone::skipped;
  }

  void told_as(Zone zone, Zone end) {
    const bool handed_on = end == Zone::handed_on;
    // With every further call refused, each event that follows may hand back one of its own.
    const std::size_t failures = refused_.failures.size();
    if (handed_on && (lasting_ ? failures == 0 : failures != 1)) {
      find(std::to_string(failures) + " failures handed back instead of one");
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
    const Difference found = difference(clean_, refused_.calls, place_ + 1);
    const std::vector<bool> needs = dependents(clean_, place_);
    const Leeway may_differ = leeway();
    for (const std::size_t i : found.missing) {
      const Call& call = clean_[i];
      if (!call.is_event && !needs[i] && !may_differ(clean_run_, i) &&
          !is_among(call, refused_.calls, found.extra)) {
        return find("a statement doesn't run: " + name_of(call));
      }
    }
    for (const std::size_t i : found.extra) {
      const Call& call = refused_.calls[i];
      if (!call.is_event && !is_made_again(call, needs) && !may_differ(refused_run_, i) &&
          !is_among(call, clean_, found.missing)) {
        return find("a statement runs beyond the sound run's: " + name_of(call));
      }
    }
  }

  using Leeway = std::function<bool(const Run& run, std::size_t i)>;
  Leeway leeway() const {
    if (is_import()) {
      return [leeway = ImportLeeway(clean_run_, place_)](const Run& run, std::size_t i) {
        return leeway.covers(run, i);
      };
    }
    const Reach reach = reach_of(clean_[place_]);
    const bool whole_event = reach == Reach::event || (reach == Reach::own && changes_a_tool());
    const std::size_t end = whole_event ? SIZE_MAX : reach == Reach::own ? place_ + at_once : place_ + 1;
    return [end, unread = operation()](const Run& run, std::size_t i) {
      return i < end || run.calls[i].on == unread;
    };
  }

  [[nodiscard]] bool is_export() const {
    return std::string_view(sound_.scenario->name).starts_with("export");
  }
  [[nodiscard]] bool is_import() const {
    return std::string_view(sound_.scenario->name).starts_with("import");
  }
  /// One step on one tool, which a failure in its midst may end.
  [[nodiscard]] bool changes_a_tool() const {
    const std::string_view name = sound_.scenario->name;
    return name.starts_with("modify") || name == "deferred-step" || name == "delete";
  }
  /// The operation that the call is on: one whose tool can't be read counts at every tool, and is read again.
  [[nodiscard]] std::string operation() const {
    const std::string& on = clean_[place_].on;
    return on.starts_with("Operation(") ? on : "";
  }

  /// A statement that runs earlier or later than in the other run.
  static bool is_among(const Call& call, const std::vector<Call>& calls,
                       const std::vector<std::size_t>& places) {
    return std::ranges::any_of(places, [&](std::size_t i) { return calls[i].statement == call.statement; });
  }

  /// A value that couldn't be had may be asked for again, from the beginning of its statement to its end.
  [[nodiscard]] bool is_made_again(const Call& call, const std::vector<bool>& needs) const {
    constexpr std::size_t near = 3;
    for (std::size_t i = place_ - std::min(place_, near); i < clean_.size(); ++i) {
      if ((i <= place_ || needs[i]) && clean_[i].key == call.key) return true;
    }
    return false;
  }

  const SoundRun& sound_;
  const std::vector<Call>& clean_;
  const Outcome& refused_;
  Run clean_run_, refused_run_;
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
