#include "deskhost/check/judge.h"

#include <algorithm>
#include <string_view>

#include "deskhost/check/leeway.h"

namespace deskhost::check {
namespace {

constexpr std::string_view refusal = "The host refuses the call";
constexpr const char* parameter_message = "Error in GetMachineSetupParameter";
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
    const Zone zone = zone_at(place_);
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

  /// A look whether a collection is still what it was, beside the statements of a walk: while it walks,
  /// behind an entry that it has used, or where it has a copy of all entries.
  [[nodiscard]] bool is_look(std::size_t place) const {
    const Call& call = clean_[place];
    if (call.is_event || call.member != "Count" || place == 0) return false;
    const Call& before = clean_[place - 1];
    return call.on == "Operations" ||
           (call.on == "Tools" && (is_export() || before.member == "ValueMarked")) ||
           (call.on == "SimSolids" && before.member == "Refresh") ||
           (call.on == "SimTurrets" && before.member == "Origin");
  }
  /// Such a look that is refused only means that what was kept is asked anew.
  [[nodiscard]] Zone zone_at(std::size_t place) const {
    return is_look(place) ? Zone::skipped : sound_.zones[place];
  }
  /// So does a tool that can't be fetched by its id behind its coming.
  [[nodiscard]] bool is_asked_anew(const Call& call) const {
    const Call& refused = clean_[place_];
    const bool by_id = refused.on == "Tools" && refused.member == "Item" && refused.args.starts_with("[\"");
    return (by_id || is_look(place_)) && call.op == "get" &&
           std::ranges::any_of(clean_, [&](const Call& known) { return known.key == call.key; });
  }

  /// A new tool that doesn't get its identity stays without one, and the next search fails on it.
  [[nodiscard]] bool leaves_tool_nameless() const {
    return is_import(*sound_.scenario) && clean_run_.steps[place_].stage == Stage::build &&
           is_parameter(clean_[place_], "ToolID");
  }

  /// With every further call refused, the next one that isn't skipped decides.
  Zone zone_that_ends() const {
    for (std::size_t i = place_; i < clean_.size(); ++i) {
      if (clean_[i].is_event) continue;
      // A material that can't be asked for is none, and with none the skipping ends.
      if (is_export() && is_parameter(clean_[i], "KBM_StandardName")) return Zone::handed_on;
      const Zone zone = zone_at(i);
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
    const Leeway may_differ = leeway(*sound_.scenario, clean_run_, place_);
    for (const std::size_t i : found.missing) {
      const Call& call = clean_[i];
      if (!call.is_event && !needs[i] && !may_differ(clean_run_, i) &&
          !is_among(call, refused_.calls, found.extra)) {
        return find("a statement doesn't run: " + name_of(call));
      }
    }
    for (const std::size_t i : found.extra) {
      const Call& call = refused_.calls[i];
      if (!call.is_event && !is_asked_anew(call) && !is_made_again(call, needs) &&
          !may_differ(refused_run_, i) && !is_among(call, clean_, found.missing)) {
        return find("a statement runs beyond the sound run's: " + name_of(call));
      }
    }
  }

  [[nodiscard]] bool is_export() const {
    return std::string_view(sound_.scenario->name).starts_with("export");
  }
  /// A statement that runs earlier or later than in the other run.
  static bool is_among(const Call& call, const std::vector<Call>& calls,
                       const std::vector<std::size_t>& places) {
    return std::ranges::any_of(places, [&](std::size_t i) { return calls[i].statement == call.statement; });
  }

  /// A value that couldn't be had may be asked for again, from the beginning of its statement to its end.
  [[nodiscard]] bool is_made_again(const Call& call, const std::vector<bool>& needs) const {
    constexpr std::size_t reach = 3;
    for (std::size_t i = place_ - std::min(place_, reach); i < clean_.size(); ++i) {
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
