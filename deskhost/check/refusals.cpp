#include <algorithm>

#include "deskhost/check/judge.h"

namespace deskhost::check {
namespace {

constexpr std::size_t refusals_in_a_process = 50;

/// Refuses each host call of a scenario in turn; check n refuses call n.
class RefusalRunner final : public Runner {
 public:
  RefusalRunner(const Place& place, const Scenario& scenario, bool lasting)
      : stand_(place), scenario_(scenario), lasting_(lasting) {
    sound_.scenario = &scenario;
    Sitting sitting(stand_.shop(), stand_.make_addin(), preloaded());
    make_ready(sitting);
    scenario_.act(sitting);
    sound_.outcome = sitting.end();
    sitting.take_down();
    sound_.zones = scenario.zones(sound_.outcome.calls);
    for (std::size_t i = 0; i < sound_.outcome.calls.size(); ++i) {
      if (!sound_.outcome.calls[i].is_event) sound_.calls.push_back(i);
    }
  }

  [[nodiscard]] std::size_t count() const override { return sound_.calls.size(); }

  void run(std::size_t index, Report& report) override {
    ++(lasting_ ? report.lasting : report.single);
    Sitting sitting(stand_.shop(), stand_.make_addin(), preloaded());
    make_ready(sitting);
    sitting.refuse(index, lasting_);
    scenario_.act(sitting);
    const Outcome refused = sitting.end();
    sitting.refuse_nothing();
    for (std::string& finding : judge(sound_, refused, index, lasting_)) {
      report.findings.push_back(std::move(finding));
    }
    if (is_command()) document_is_released(sitting, report);
    if (is_part_of_life(sitting)) {
      stand_.end_well(sitting, report);
    } else {
      for (std::string& finding : sitting.take_down()) report.findings.push_back(std::move(finding));
      ends_in_a_new_session(report);
    }
  }

 private:
  [[nodiscard]] std::string preloaded() const { return connects() ? scenario_.document : std::string(); }
  [[nodiscard]] bool connects() const {
    return std::string_view(scenario_.connection_call) == "OnConnection";
  }
  // A connection that failed, and what was taken down, needn't work on.
  bool is_part_of_life(Sitting& sitting) {
    return *scenario_.connection_call == '\0' && sitting.session().addin() != nullptr &&
           std::string_view(scenario_.name) != "disconnect";
  }
  [[nodiscard]] bool is_command() const {
    return std::ranges::any_of(sound_.outcome.calls,
                               [](const Call& call) { return call.member == "OnCommand"; });
  }
  // Behind a command nobody hears that the document is closed.
  static void document_is_released(Sitting& sitting, Report& report) {
    sitting.begin();
    sitting.session().close();
    const std::vector<Call> calls = sitting.end().calls;
    if (!std::ranges::all_of(calls, &Call::is_event)) {
      report.findings.emplace_back("the document is still bound behind the command");
    }
  }
  void ends_in_a_new_session(Report& report) {
    Sitting sitting(stand_.shop(), stand_.make_addin());
    sitting.session().connect();
    stand_.end_well(sitting, report);
  }

  void make_ready(Sitting& sitting) {
    stand_.shop().reset();
    stand_.shop().settings(scenario_.settings);
    if (scenario_.new_knowledge_base) stand_.shop().forget_knowledge_base();
    if (!connects()) {
      sitting.session().connect();
      sitting.open(scenario_.document);
      scenario_.prepare(sitting);
    }
    sitting.begin();
  }

  Stand stand_;
  const Scenario& scenario_;
  bool lasting_;
  SoundRun sound_;
};

void add(std::vector<Set>& sets, std::span<const Scenario> scenarios, bool lasting) {
  for (const Scenario& scenario : scenarios) {
    sets.push_back({std::string(scenario.name) + (lasting ? ":from" : ":once"),
                    [&scenario, lasting](const Place& place) {
                      return std::make_unique<RefusalRunner>(place, scenario, lasting);
                    },
                    refusals_in_a_process});
  }
}

}  // namespace

std::vector<Set> import_refusal_sets() {
  std::vector<Set> sets;
  add(sets, import_scenarios(), false);
  return sets;
}

std::vector<Set> other_refusal_sets() {
  std::vector<Set> sets;
  add(sets, other_scenarios(), false);
  return sets;
}

std::vector<Set> lasting_refusal_sets() {
  std::vector<Set> sets;
  add(sets, import_scenarios(), true);
  add(sets, other_scenarios(), true);
  return sets;
}

}  // namespace deskhost::check
