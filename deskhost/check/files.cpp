#include <array>

#include "deskhost/check/one_check.h"
#include "deskhost/model/document.h"
#include "deskhost/system/program.h"

namespace deskhost::check {
namespace {

namespace fs = std::filesystem;

/// What a user sees of a fault.
enum class Seen { nothing, message, failure };

struct Fault {
  const char* name;
  void (*make)(Shop& shop);
  std::int32_t command;
  Seen seen;
  const char* text = "";   ///< part of the message or failure
  bool tools_come = true;  ///< the import reaches its tools
};

void folder_instead(Shop& shop, const char* file) {
  fs::remove_all(shop.path(file));
  fs::create_directories(shop.path(file) / "inside");
}
void take_away(Shop& shop, const char* file) {
  fs::remove_all(shop.path(file));
}
void settings(Shop& shop, const char* text) {
  shop.settings(text);
}
/// The exporter writes its file and then does something else.
void exporter_then(Shop& shop, const std::string& script) {
  shop.program(exporter,
               "copy '" + shop.file("programs/tools.csv") + "' '" + shop.file(export_file) + "'\n" + script);
}

constexpr auto faults = std::to_array<Fault>({
    {"exporter missing", [](Shop& s) { take_away(s, exporter); }, 1, Seen::message, "", false},
    {"exporter a folder", [](Shop& s) { folder_instead(s, exporter); }, 1, Seen::message, "", false},
    {"exporter not a program",
     [](Shop& s) { take_away(s, exporter); s.write(exporter, "x"); }, 1,
     Seen::message, "", false},
    {"exporter writes nothing", [](Shop& s) { s.program(exporter, ""); }, 1, Seen::message,
     "QV-Esprit-Export.csv", false},
    {"exporter fails", [](Shop& s) { s.program(exporter, "fail"); }, 1, Seen::message, "QV-Esprit-Export.csv",
     false},
    {"exporter fails behind its file", [](Shop& s) { exporter_then(s, "fail"); }, 1, Seen::nothing},
    {"exporter is killed", [](Shop& s) { s.program(exporter, "die"); }, 1, Seen::message,
     "QV-Esprit-Export.csv", false},
    {"exporter is killed behind its file", [](Shop& s) { exporter_then(s, "die"); }, 1, Seen::nothing},
    {"half an export file",
     [](Shop& s) { s.program(exporter, "half '" + s.file("programs/tools.csv") + "' '" + s.file(export_file) + "'"); },
     1, Seen::message, " wrong Format!"},
    {"empty export file", [](Shop& s) { s.program(exporter, "make '" + s.file(export_file) + "'"); }, 1, Seen::nothing,
     "", false},
    {"exporter makes a folder", [](Shop& s) { s.program(exporter, "folder '" + s.file(export_file) + "'"); }, 1,
     Seen::message, "QV-Esprit-Export.csv", false},
    {"old export file a folder", [](Shop& s) { folder_instead(s, export_file); }, 1, Seen::message,
     "QV-Esprit-Export.csv", false},
    {"export folder missing", [](Shop&) { set_variable("QVEspritExportPath", "/nowhere/at all"); }, 1, Seen::message,
     "nowhere", false},
    {"export folder not set", [](Shop&) { set_variable("QVEspritExportPath", {}); }, 1, Seen::message, "", false},
    {"install folder not set", [](Shop&) { set_variable("QVEspritInstallPath", {}); }, 1, Seen::message, "", false},
    {"speeds missing", [](Shop& s) { take_away(s, speeds_file); }, 1, Seen::message, ""},
    {"speeds a folder", [](Shop& s) { folder_instead(s, speeds_file); }, 1, Seen::message, ""},
    {"speeds too short", [](Shop& s) { s.write(speeds_file, "DIN;Steel\r\n"); }, 1, Seen::message, ""},
    {"speeds empty", [](Shop& s) { s.write(speeds_file, ""); }, 1, Seen::nothing},
    {"models folder missing", [](Shop& s) { take_away(s, "models"); }, 1, Seen::nothing},
    {"models folder a file", [](Shop& s) { take_away(s, "models"); s.write("models", "x"); }, 1, Seen::nothing},
    {"model a folder", [](Shop& s) { folder_instead(s, "models/100.stl"); }, 1, Seen::nothing},
    {"settings a folder", [](Shop& s) { folder_instead(s, "addin/QVEsprit.cfg"); }, 1, Seen::nothing},
    {"settings rubbish", [](Shop& s) { s.write("addin/QVEsprit.cfg", std::string("\x00[\xff\r=\n[Default\r\n;", 17)); },
     1, Seen::nothing},
    {"registry a folder", [](Shop& s) { folder_instead(s, registry_file); s.take_up_registry(); }, 1, Seen::nothing},
    {"knowledge base rubbish",
     [](Shop& s) { s.forget_knowledge_base(); s.write(knowledge_base_file, std::string(5000, 'x')); }, 1,
     Seen::message, "", false},
    {"list maker missing", [](Shop& s) { take_away(s, list_maker); }, 2, Seen::message,
     "the following file/folder does not exist: "},
    {"list maker a folder", [](Shop& s) { folder_instead(s, list_maker); }, 2, Seen::nothing},
    {"list maker not a program", [](Shop& s) { s.write(list_maker, "x"); }, 2, Seen::nothing},
    {"list maker fails", [](Shop& s) { s.program(list_maker, "fail"); }, 2, Seen::nothing},
    {"list maker is killed", [](Shop& s) { s.program(list_maker, "die"); }, 2, Seen::nothing},
    {"list a folder", [](Shop& s) { folder_instead(s, list_file); }, 2, Seen::failure, ""},
    {"list folder missing", [](Shop&) { set_variable("QVMakeListPath", "/nowhere/at all"); }, 2, Seen::failure, ""},
    {"list on a full disk", [](Shop& s) { s.fill_disk(); }, 2, Seen::failure, ""},
    {"a number that is none", [](Shop& s) { settings(s, "MachineNr=many\r\n"); }, 2, Seen::failure, ""},
    {"settings a folder at export", [](Shop& s) { folder_instead(s, "addin/QVEsprit.cfg"); }, 2, Seen::nothing},
});

class FileFaultRunner final : public StandRunner {
 public:
  using StandRunner::StandRunner;
  [[nodiscard]] std::size_t count() const override { return faults.size(); }

  void run(std::size_t index, Report& report) override {
    const Fault& fault = faults[index];
    const auto find = [&](const std::string& what) {
      report.findings.push_back(std::string(fault.name) + ": " + what);
    };
    Shop& shop = stand().shop();
    shop.reset();
    Sitting sitting(shop, stand().make_addin());
    sitting.session().connect();
    sitting.open("turret.json");
    fault.make(shop);
    sitting.begin();
    sitting.session().command(fault.command);
    const Outcome outcome = sitting.end();
    check_seen(fault, outcome, find);
    if (fault.command == 1) {
      const bool came = sitting.session().document()->tools().size() > 2;
      const bool changed = sitting.session().document()->tools().find_by_id("Turning#100") != nullptr;
      if ((came || changed) != fault.tools_come) find(came ? "tools came" : "no tool came");
    }
    clear(shop);
    stand().end_well(sitting, report);
  }

 private:
  template <class Find>
  static void check_seen(const Fault& fault, const Outcome& outcome, const Find& find) {
    const bool told = !outcome.messages.empty();
    const bool failed = !outcome.failures.empty();
    if (told != (fault.seen == Seen::message))
      find(told ? "message: " + outcome.messages.front() : "no message");
    if (failed != (fault.seen == Seen::failure))
      find(failed ? "failure: " + outcome.failures.front() : "no failure");
    const std::string text = told ? outcome.messages.back() : "";
    if (told && text.find(fault.text) == std::string::npos) find("another message: " + text);
  }
  // What `reset` doesn't expect in its way.
  static void clear(Shop& shop) {
    for (const char* const name : {"models", exporter, list_maker}) fs::remove_all(shop.path(name));
  }
};

}  // namespace

std::vector<Set> file_fault_sets() {
  return {set_of<FileFaultRunner>("file-fault")};
}

}  // namespace deskhost::check
