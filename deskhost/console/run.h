#pragma once

#include <iosfwd>
#include <nlohmann/json.hpp>

#include "deskhost/console/ledger.h"
#include "deskhost/console/options.h"
#include "deskhost/console/progress.h"
#include "deskhost/console/reporter.h"

namespace deskhost {

enum Status { all_well = 0, failures_handed_back = 1, wrong_use = 2, not_loaded = 3 };

/// What a session showed and counted, for a program.
struct Results {
  bool instead_of_text = false;  ///< nothing of it goes to standard output as text
  nlohmann::ordered_json actions = nlohmann::ordered_json::array();
  nlohmann::ordered_json summary;
};

/// The page that `--json` writes.
std::string json_of(const Results& results, int status, const Reporter& reporter);

/// A session from connection to take-down, with all that is told of it.
class Run {
 public:
  Run(CommandLine& line, const Surroundings& surroundings, Reporter& reporter, Results& results);
  ~Run();
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  /// The exit status. Throws Failure where the add-in can't be made.
  int to_its_end(const std::function<automation::Ref()>& knowledge_base);

 private:
  void tell(const char* kind, const std::string& text);
  void watch_system();
  void watch_session();
  bool run_actions(Session& session);
  bool run_action(Session& session, const PlannedAction& planned);
  bool run_told(const PlannedAction& planned, Stage& stage);
  void sum_up(Session& session);

  CommandLine& line_;
  const Surroundings& surroundings_;
  Reporter& reporter_;
  Results& results_;
  Progress progress_;
  Ledger ledger_;
};

}  // namespace deskhost
