#include <array>

#include "deskhost/check/one_check.h"
#include "deskhost/model/application.h"

namespace deskhost::check {
namespace {

class ConnectionRunner final : public StandRunner {
 public:
  using StandRunner::StandRunner;
  [[nodiscard]] std::size_t count() const override { return 2; }
  // 0: without a document; 1: with one that is open already.
  void run(std::size_t index, Report& report) override {
    stand().shop().reset();
    Sitting sitting(stand().shop(), stand().make_addin(), index == 1 ? "turret.json" : "");
    sitting.session().connect();
    const Outcome outcome = sitting.end();
    expect(outcome.failures.empty(), "the connection fails", report);
    expect(outcome.messages.empty(), "the connection shows a message", report);
    Application& application = sitting.session().application();
    expect(application.add_in->commands.size() == 3, "there aren't three commands", report);
    expect(application.tool_bars->bars.size() == 1, "there isn't one toolbar", report);
    stand().end_well(sitting, report);
  }
};

/// A command in a document; without one it must leave the host alone.
struct CommandCase {
  std::int32_t number;
  const char* document;
};
constexpr auto command_cases = std::to_array<CommandCase>({
    {0, ""},
    {1, ""},
    {2, ""},
    {7, ""},
    {-1, ""},
    {0, "turret.json"},
    {1, "turret.json"},
    {2, "turret.json"},
    {7, "turret.json"},
    {0, "mill.json"},
    {1, "mill.json"},
    {2, "mill.json"},
});

class CommandRunner final : public StandRunner {
 public:
  using StandRunner::StandRunner;
  [[nodiscard]] std::size_t count() const override { return command_cases.size(); }
  void run(std::size_t index, Report& report) override {
    const CommandCase& c = command_cases[index];
    const bool has_document = *c.document != '\0';
    stand().shop().reset();
    Sitting sitting(stand().shop(), stand().make_addin());
    sitting.session().connect();
    if (has_document) sitting.open(c.document);
    sitting.begin();
    const bool enabled = sitting.session().command_ui(c.number);
    expect(enabled == (has_document || c.number <= 0), "the command's state is wrong", report);
    sitting.session().command(c.number);
    sitting.session().foreign(c.number);
    const Outcome outcome = sitting.end();
    if (has_document) {
      expect(outcome.failures.empty(), "the command fails", report);
      expect(outcome.messages.empty(), "the command shows a message", report);
    } else {
      expect(outcome.failures.empty() || c.number == 2, "the command fails without a document", report);
    }
    stand().end_well(sitting, report);
  }
};

class ReconnectionRunner final : public StandRunner {
 public:
  using StandRunner::StandRunner;
  [[nodiscard]] std::size_t count() const override { return ways.size(); }
  // A hundred connections in one host, with one of the ways to take the component down.
  void run(std::size_t index, Report& report) override {
    constexpr int rounds = 100;
    stand().shop().reset();
    Sitting sitting(stand().shop(), stand().make_addin());
    Session& session = sitting.session();
    sitting.session().connect();
    sitting.open("turret.json");
    std::string left_after_first;
    for (int round = 0; round < rounds; ++round) {
      if (round > 0) session.connect();
      if (round % 10 == 0) session.command(0);
      if (ways[index].shutdown) session.shutdown();
      if (ways[index].disconnect) session.disconnect();
      session.release();
      expect(session.gate().left_behind().empty(), "left behind: " + session.gate().left_behind(), report);
      expect(session.application().tool_bars->bars.empty(), toolbar_left, report);
      expect(sitting.menu_is_as_before(), menu_left, report);
      if (!report.findings.empty()) break;
    }
    expect(sitting.end().failures.empty(), "a failure came back", report);
    session.connect();
    stand().end_well(sitting, report);
  }

 private:
  struct Way {
    bool shutdown, disconnect;
  };
  static constexpr std::array<Way, 4> ways{{{true, true}, {false, true}, {true, false}, {false, false}}};
};

}  // namespace

std::vector<Set> connection_sets() {
  return {set_of<ConnectionRunner>("connection")};
}
std::vector<Set> command_sets() {
  return {set_of<CommandRunner>("commands")};
}
std::vector<Set> reconnection_sets() {
  return {set_of<ReconnectionRunner>("reconnection")};
}

}  // namespace deskhost::check
