#include <algorithm>
#include <array>
#include <random>

#include "deskhost/check/one_check.h"
#include "deskhost/document/document_file.h"
#include "deskhost/model/document.h"

namespace deskhost::check {
namespace {

using Random = std::mt19937_64;

// Not `uniform_int_distribution`, which gives other numbers with another library.
std::size_t below(Random& random, std::size_t limit) {
  return static_cast<std::size_t>(random() % limit);
}

Random random_of(std::uint64_t seed, std::uint64_t salt, std::size_t index) {
  std::seed_seq sequence{seed, salt, static_cast<std::uint64_t>(index)};
  return Random(sequence);
}

constexpr std::array<const char*, 3> documents{"turret.json", "mill.json", "small.json"};
constexpr std::array<const char*, 6> parameters{
    "ToolLength", "LatheToolOrientation", "Orientation", "TurretID", "StationID", "ToolNumber"};

std::shared_ptr<Tool> some_tool(Sitting& sitting, Random& random) {
  const auto document = sitting.session().document();
  if (!document || document->tools().size() == 0) return nullptr;
  return document->tools().at(below(random, document->tools().size()));
}

using Action = void (*)(Sitting& sitting, Random& random);

constexpr auto actions = std::to_array<Action>({
    [](Sitting& s, Random& r) { s.open(documents[below(r, documents.size())]); },
    [](Sitting& s, Random& r) { s.open(documents[below(r, documents.size())]); },
    [](Sitting& s, Random&) {
      if (s.session().document()) s.session().close();
    },
    [](Sitting& s, Random& r) { s.session().command(static_cast<std::int32_t>(below(r, 4))); },
    [](Sitting& s, Random&) { s.session().command(1); },
    [](Sitting& s, Random&) { s.session().command(2); },
    [](Sitting& s, Random& r) { s.session().foreign(static_cast<std::int32_t>(below(r, 4))); },
    [](Sitting& s, Random& r) {
      static_cast<void>(s.session().command_ui(static_cast<std::int32_t>(below(r, 4))));
    },
    [](Sitting& s, Random& r) {
      const auto tool = some_tool(s, r);
      if (!tool) return;
      const std::string value = std::to_string(below(r, 26));
      s.session().document()->user_modify(tool, {{parameters[below(r, parameters.size())], value}});
    },
    [](Sitting& s, Random& r) {
      if (const auto tool = some_tool(s, r)) s.session().document()->user_delete(tool);
    },
    [](Sitting& s, Random&) {
      if (s.session().document()) s.session().simulate();
    },
    [](Sitting& s, Random& r) { s.session().language(static_cast<std::int32_t>(below(r, 15)) - 1); },
    [](Sitting& s, Random& r) { s.refuse(below(r, 200), below(r, 4) == 0); },
    [](Sitting& s, Random&) { s.refuse_nothing(); },
    [](Sitting& s, Random&) { s.session().connect(); },
    [](Sitting& s, Random&) { s.session().shutdown(); },
    [](Sitting& s, Random&) { s.session().disconnect(); },
    [](Sitting& s, Random&) {
      s.session().release();
      s.session().connect();
    },
});

class RandomActionRunner final : public StandRunner {
 public:
  using StandRunner::StandRunner;
  [[nodiscard]] std::size_t count() const override { return 2000; }

  void run(std::size_t index, Report& report) override {
    Random random = random_of(place().seed, 9, index);
    stand().shop().reset();
    Sitting sitting(stand().shop(), stand().make_addin());
    sitting.session().connect();
    const std::size_t length = 1 + below(random, 12);
    for (std::size_t i = 0; i < length; ++i) actions[below(random, actions.size())](sitting, random);
    sitting.refuse_nothing();
    sitting.session().language(0);
    for (std::string& finding : sitting.take_down()) report.findings.push_back(std::move(finding));
    Sitting next(stand().shop(), stand().make_addin());
    next.session().connect();
    stand().end_well(next, report);
  }
};

/// A file that is read, what holds it, and what reads it.
struct ReadFile {
  const char* name;
  const char* path;
  void (*read)(Sitting& sitting);
};
constexpr auto read_files = std::to_array<ReadFile>({
    {"tools", "programs/tools.csv", [](Sitting& s) { s.session().command(1); }},
    {"speeds", speeds_file, [](Sitting& s) { s.session().command(1); }},
    {"settings", "addin/QVEsprit.cfg",
     [](Sitting& s) {
       s.session().command(1);
       s.session().command(2);
     }},
    {"texts", "addin/QVEspritEng.txt", [](Sitting& s) { s.session().command(2); }},
    {"registry", registry_file, [](Sitting&) {}},
    {"document", "turret.json",
     [](Sitting& s) {
       s.session().command(1);
       s.session().command(2);
       s.session().simulate();
     }},
});
constexpr std::size_t variants = 400;  ///< of each file

std::string random_bytes(Random& random) {
  std::string bytes(below(random, 3000), '\0');
  for (char& byte : bytes) byte = static_cast<char>(random());
  return bytes;
}

constexpr std::array<std::string_view, 14> telling{
    ";",     "#",           "\r\n", "[Default]\r\n",           "=", "\"", "'", "-1",
    "1e999", "99999999999", "\xE4", std::string_view("\0", 1), "{", "*"};

/// The file with a few bytes changed, taken away, doubled, or replaced by ones that mean something.
std::string mutated(std::string bytes, Random& random) {
  const std::size_t changes = 1 + below(random, 8);
  for (std::size_t i = 0; i < changes && !bytes.empty(); ++i) {
    const std::size_t at = below(random, bytes.size());
    const std::size_t length = std::min(below(random, 40), bytes.size() - at);
    switch (below(random, 5)) {
      case 0:
        bytes[at] = static_cast<char>(random());
        break;
      case 1:
        bytes.erase(at, length);
        break;
      case 2:
        bytes.insert(at, bytes.substr(at, length));
        break;
      case 3:
        bytes.insert(at, telling[below(random, telling.size())]);
        break;
      default:
        bytes.resize(at);
        break;
    }
  }
  return bytes;
}

class RandomByteRunner final : public StandRunner {
 public:
  explicit RandomByteRunner(const Place& place) : StandRunner(place) {
    texts_ = stand().shop().read("addin/QVEspritEng.txt");
    document_ = stand().shop().read("turret.json");
  }
  [[nodiscard]] std::size_t count() const override { return read_files.size() * variants; }

  void run(std::size_t index, Report& report) override {
    const ReadFile& file = read_files[index / variants];
    Random random = random_of(place().seed, 10, index);
    Shop& shop = stand().shop();
    shop.reset();
    shop.settings("OutputMSG=1\r\nToolOutputorderByLatheStation=1\r\nMachineNr=1570\r\n");
    if (file.path == std::string_view(registry_file)) shop.write(file.path, registry);
    const std::string sound = shop.read(file.path);
    shop.write(file.path, below(random, 4) == 0 ? random_bytes(random) : mutated(sound, random));
    shop.take_up_registry();
    {
      Sitting sitting(shop, stand().make_addin());
      sitting.session().connect();
      if (open(sitting)) file.read(sitting);
      for (std::string& finding : sitting.take_down()) report.findings.push_back(std::move(finding));
    }
    shop.write("addin/QVEspritEng.txt", texts_);
    shop.write("turret.json", document_);
    shop.reset();
    Sitting next(shop, stand().make_addin());
    next.session().connect();
    stand().end_well(next, report);
    for (std::string& finding : report.findings) finding = std::string(file.name) + ": " + finding;
  }

 private:
  static constexpr const char* registry =
      "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\D.P.Technology\\Esprit\\QVEsprit]\r\n"
      "\"tbPosition\"=\"1\"\r\n\"tbTop\"=\"20\"\r\n\"tbLeft\"=\"30\"\r\n";

  static bool open(Sitting& sitting) {
    try {
      sitting.open("turret.json");
      return true;
    } catch (const DocumentFileError&) {
      return false;  // the host doesn't open it
    }
  }

  std::string texts_, document_;
};

}  // namespace

std::vector<Set> random_action_sets() {
  return {set_of<RandomActionRunner>("random-actions", 100)};
}
std::vector<Set> random_byte_sets() {
  return {set_of<RandomByteRunner>("random-bytes", 100)};
}

}  // namespace deskhost::check
