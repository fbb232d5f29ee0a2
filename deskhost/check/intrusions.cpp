#include <array>

#include "deskhost/check/one_check.h"
#include "deskhost/model/document.h"

namespace deskhost::check {
namespace {

/// What happens in the middle of a host call.
struct Intrusion {
  const char* name;
  void (*happen)(Sitting& sitting);
  bool is_end = false;          ///< of the component's connection
  bool keeps_document = false;  ///< what is going on leaves it as if nothing had happened
};

void close_document(Sitting& sitting) {
  if (sitting.session().document()) sitting.session().close();
}
std::string first_tool(Sitting& sitting) {
  const auto document = sitting.session().document();
  if (!document || document->tools().size() == 0) return {};
  return document->tools().at(0)->value("ToolID").to_text();
}
void change_tool(Sitting& sitting) {
  const std::string id = first_tool(sitting);
  if (!id.empty()) sitting.session().modify(id, {{"ToolLength", "99"}});
}
void delete_tool(Sitting& sitting) {
  const std::string id = first_tool(sitting);
  if (!id.empty()) sitting.session().remove(id);
}

constexpr auto intrusions = std::to_array<Intrusion>({
    {"close", close_document},
    {"open", [](Sitting& s) { s.open("mill.json"); }},
    {"change", change_tool},
    {"delete", delete_tool},
    {"state", [](Sitting& s) { static_cast<void>(s.session().command_ui(1)); }},
    {"toolbar", [](Sitting& s) { s.session().command(0); }},
    {"import", [](Sitting& s) { s.session().command(1); }},
    {"export", [](Sitting& s) { s.session().command(2); }},
    {"simulate",
     [](Sitting& s) {
       if (s.session().document()) s.session().simulate();
     }},
    {"shutdown", [](Sitting& s) { s.session().shutdown(); }, true},
    {"disconnect", [](Sitting& s) { s.session().disconnect(); }, true},
    {"release", [](Sitting& s) { s.session().release(); }, true, true},
    {"connect",
     [](Sitting& s) {
       s.session().release();
       s.session().connect();
     },
     false, true},
});

/// What is going on when it happens.
struct Going {
  const char* name;
  void (*act)(Sitting& sitting);
  std::uint64_t asking = 0;  ///< calls of the question for the command's state, which is an event of its own
};
constexpr auto goings = std::to_array<Going>({
    {"import", [](Sitting& s) { s.session().command(1); }, 1},
    {"export", [](Sitting& s) { s.session().command(2); }, 1},
    {"change", change_tool},
    {"simulate", [](Sitting& s) { s.session().simulate(); }},
    {"open", [](Sitting& s) { s.open("turret.json"); }},
});

constexpr std::size_t moments = 24;  ///< of each going, spread over its calls

class IntrusionRunner final : public StandRunner {
 public:
  explicit IntrusionRunner(const Place& place) : StandRunner(place) {
    for (std::size_t i = 0; i < goings.size(); ++i) {
      Sitting sitting(stand().shop(), stand().make_addin());
      const std::uint64_t before = make_ready(sitting);
      goings[i].act(sitting);
      sound_[i] = {sitting.session().gate().calls() - before, document_of(sitting)};
      sitting.take_down();
    }
  }
  [[nodiscard]] std::size_t count() const override { return goings.size() * intrusions.size() * moments; }

  void run(std::size_t index, Report& report) override {
    const std::size_t moment = index % moments;
    const Intrusion& intrusion = intrusions[index / moments % intrusions.size()];
    const std::size_t going = index / moments / intrusions.size();
    Sitting sitting(stand().shop(), stand().make_addin());
    make_ready(sitting);
    const std::uint64_t call = 1 + moment * sound_[going].calls / moments;
    std::uint64_t until = call;
    sitting.observe([&] {
      if (until == 0 || --until > 0) return;
      intrusion.happen(sitting);
    });
    goings[going].act(sitting);
    sitting.observe({});
    const std::size_t before = report.findings.size();
    if (intrusion.keeps_document && call > goings[going].asking)
      expect(document_of(sitting) == sound_[going].document, "the document is another one", report);
    if (intrusion.is_end) {
      take_down(sitting, report);
      Sitting next(stand().shop(), stand().make_addin());
      next.session().connect();
      stand().end_well(next, report);
    } else {
      stand().end_well(sitting, report);
    }
    for (std::size_t i = before; i < report.findings.size(); ++i) {
      report.findings[i] =
          std::string(intrusion.name) + " during " + goings[going].name + ": " + report.findings[i];
    }
  }

 private:
  /// What it comes to without an intrusion.
  struct Sound {
    std::uint64_t calls = 0;
    std::string document;
  };

  std::string document_of(Sitting& sitting) {
    sitting.session().save(stand().shop().file("going.json"));
    return without_identifiers(stand().shop().read("going.json"));
  }
  std::uint64_t make_ready(Sitting& sitting) {
    stand().shop().reset();
    sitting.session().connect();
    sitting.open("turret.json");
    return sitting.session().gate().calls();
  }

  std::array<Sound, goings.size()> sound_{};
};

}  // namespace

std::vector<Set> intrusion_sets() {
  return {set_of<IntrusionRunner>("intrusion", 25)};
}

}  // namespace deskhost::check
