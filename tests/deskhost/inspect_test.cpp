#include "deskhost/inspect/inspect.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <set>
#include <sstream>

#include "automation/number.h"
#include "deskhost/knowledgebase/knowledge_base.h"
#include "deskhost/session/session.h"
#include "formats/export_fields.h"
#include "platform/component_runtime.h"
#include "platform/message_box.h"
#include "platform/temp_folder.h"

namespace {

using Json = nlohmann::json;
using testing_support::TempFolder;
using testing_support::WithVariable;
using Fields = std::map<std::size_t, std::string>;

std::function<automation::Ref()> load(const std::string& file) {
  return [component = std::shared_ptr(platform::load_component(file))] {
    return component->create("QVEsprit.Connect");
  };
}

std::string read(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

std::string line_of(const Fields& fields) {
  std::string line;
  for (std::size_t i = 0; i < formats::field_count; ++i) {
    const auto given = fields.find(i);
    line += (i == 0 ? "" : ";") + (given == fields.end() ? "" : given->second);
  }
  return line;
}

/// A sound tool with other values here and there.
std::string tool(Fields other) {
  other.insert({{0, "1"},
                {1, "1"},
                {2, "Mill#200"},
                {3, "9"},
                {4, "71"},
                {5, "VHM"},
                {21, "10"},
                {88, "1"},
                {89, "2"}});
  other.insert({{90, "0"}, {91, "0"}, {92, "0"}, {102, "0"}});
  return line_of(other);
}

constexpr const char* document =
    R"({ "Name": "T.esp", "MachineSetup": { "Turrets": [ { "Name": "Upper", "Stations": [
  { "Number": 1 }, { "Number": 2 }, { "Number": 3, "ToolReference": 1 } ] } ] },
 "Tools": [ { "Class": 16, "Parameters": { "ToolStyle": 16, "ToolID": "Old#100", "ToolNumber": 1, "TurretID": 1,
   "StationID": 1, "ToolNoseRadius": 0.8 } } ],
 "Operations": [ { "ToolID": "Old#100", "Duration": 12.5 }, { "ToolID": "Old#100", "Duration": 2 } ] })";

class Inspect : public testing::Test {
 protected:
  /// What `deskhost inspect` says on standard output; its status is kept.
  std::string say(const std::vector<std::string>& args) {
    std::ostringstream out;
    err.str("");
    status = deskhost::inspect::sub_command().run(args, {out, err, load});
    return out.str();
  }
  Json report(std::vector<std::string> args) {
    args.insert(args.end(), {"--addin", COMPONENT, "--json", "-"});
    const std::string text = say(args);
    return text.empty() ? Json() : Json::parse(text);
  }
  Json inspect(const std::string& bytes, std::vector<std::string> args = {}) {
    args.insert(args.begin(), {folder.write("tools.csv", bytes), folder.write("document.json", document)});
    return report(std::move(args));
  }

  TempFolder folder;
  std::ostringstream err;
  int status = 0;
};

/// "warning refused 1 21": severity, code, line, field.
std::vector<std::string> findings_of(const Json& report) {
  std::vector<std::string> texts;
  for (const Json& each : report["findings"]) {
    if (each["severity"] == "note" && each["line"].is_null()) continue;  // options that weren't given
    if (each["code"] == "empty-fields") continue;
    texts.push_back(each["severity"].get<std::string>() + " " + each["code"].get<std::string>() + " " +
                    each["line"].dump() + " " + each["field"].dump());
  }
  return texts;
}

struct Case {
  const char* about;
  std::string bytes;
  std::vector<std::string> found;
};

std::string replaced(std::string text, char from, char to) {
  std::ranges::replace(text, from, to);
  return text;
}

TEST_F(Inspect, FindsWhatAnImportWouldPassOverInSilence) {
  using List = std::vector<std::string>;
  const std::string end = "\r\n";
  const std::string good = tool({}) + end;
  const std::string other = tool({{2, "Drill#201"}, {3, "10"}, {89, "1"}}) + end;
  const std::vector<Case> cases{
      {"a sound file", good, {}},
      {"too few fields", good + "1;1;X#1" + end + other, List{"error short-line 2 null"}},
      {"lower case", "fileversion:1" + end, List{"error short-line 1 null"}},
      {"fields behind the last", tool({}) + ";;" + end, List{"note more-fields 1 null"}},
      {"a semicolon in a text", tool({{20, "coated; sharp"}}) + end,
       List{"note station-shared 1 89", "warning long-line 1 20", "warning refused 1 21"}},
      {"commas", replaced(tool({}), ';', ',') + end, List{"error separator 1 null"}},
      {"tabs", replaced(tool({}), ';', '\t') + end, List{"error separator 1 null"}},
      {"LF alone", "* head\n" + tool({}) + "\n", List{"error line-end 1 null", "warning no-tools null null"}},
      {"CR alone", "* head\r" + tool({}) + "\r", {}},
      {"a byte-order mark", "\xEF\xBB\xBF* head" + end + good,
       List{"error byte-order-mark 1 null", "error short-line 1 null"}},
      {"UTF-8",
       tool({{20,
              "gr\xC3\xB6\xC3\x9F"
              "er"}}) +
           end,
       List{"warning utf-8 1 null"}},
      {"the code page",
       tool({{20,
              "gr\xF6\xDF"
              "er"}}) +
           end,
       {}},
      {"a NUL", good + tool({{20, std::string("a\0b", 3)}, {2, "Mill#201"}, {89, "1"}, {3, "8"}}) + end,
       List{"note station-shared 2 89", "warning nul 2 null"}},
      {"UTF-16", std::string("\xFF\xFE*\0\r\0\n\0", 8),
       List{"error utf-16 1 null", "error short-line 1 null"}},
      {"nothing", "", List{"warning empty-file null null"}},
      {"comments", "* one" + end, List{"warning no-tools null null"}},
      {"no such class", good + tool({{1, "26"}, {2, "X#3"}}) + end + other, List{"error class 2 1"}},
      {"headings", tool({{1, "ToolClass"}}) + end, List{"error class 1 1"}},
      {"no identity", tool({{2, ""}}) + end, List{"error identity-empty 1 2"}},
      {"a bare identity", tool({{2, "200"}}) + end, List{"warning identity-without-hash 1 2"}},
      {"two signs", tool({{2, "A#B#200"}}) + end, List{"warning identity-with-hashes 1 2"}},
      {"letters", tool({{2, "Mill#2a"}}) + end, List{"note identifier-no-number 1 2"}},
      {"a number no host takes", tool({{3, "abc"}, {93, "2"}, {1, "1.5"}, {4, "mm"}}) + end,
       List{"warning refused 1 3", "warning refused 1 3", "warning rounded 1 1", "warning unit 1 4"}},
      {"a decimal comma", tool({{21, "9,5"}}) + end, List{"warning refused 1 21"}},
      {"text in a number", tool({{21, "10 mm"}}) + end, List{"warning refused 1 21"}},
      {"out of range", tool({{9, "3000000000"}}) + end, List{"warning refused 1 9"}},
      {"a part of a whole", tool({{9, "2.5"}}) + end, List{"warning rounded 1 9"}},
      {"of another class", tool({{86, "0.8"}}) + end, List{"note not-of-class 1 86"}},
      {"refused by the add-in", tool({{88, "one"}}) + end,
       List{"warning no-turret 1 88", "warning refused 1 88"}},
      {"a shift with a comma", tool({{90, "1,5"}}) + end,
       List{"warning refused 1 90", "warning shift-prefix 1 90"}},
      {"no such turret", tool({{88, "2"}}) + end, List{"warning no-turret 1 88"}},
      {"no such station", tool({{89, "4"}}) + end, List{"warning no-station 1 89"}},
      {"the number as station", tool({{89, ""}}) + end, List{"warning no-station 1 3"}},
      {"a station of others", tool({{89, "1"}}) + end, List{"note station-shared 1 89"}},
      {"a number of others", tool({{3, "1"}}) + end, List{"warning number-taken 1 3"}},
      {"another unit", tool({{4, "70"}}) + end, List{"warning unit 1 4"}},
      {"a reference of its own", tool({{89, "3"}, {90, "5"}}) + end, List{"note shift-kept 1 90"}},
      {"twice", good + tool({{2, "Again#200"}}) + end, List{"warning twice 2 2"}},
      {"known by another name", tool({{0, "16"}, {1, "16"}, {2, "New#100"}, {86, "0.8"}}) + end,
       List{"warning renamed 1 2"}},
      {"known in another class", tool({{2, "Old#100"}, {86, "0.8"}}) + end, List{"warning other-class 1 1"}},
      {"a value that stays", tool({{0, "16"}, {1, "16"}, {2, "Old#100"}}) + end,
       List{"warning empty-value 1 86"}},
      {"a way out of the folder", tool({{2, "Mill#../200"}}) + end,
       List{"note identifier-no-number 1 2", "warning model-outside 1 2"}},
      {"an apostrophe", tool({{5, "O'Neil"}}) + end, List{"error material-failed 1 5"}},
      {"an apostrophe later", good + tool({{2, "Drill#201"}, {3, "10"}, {5, "O'Neil"}}) + end,
       List{"note station-shared 1 89", "note station-shared 2 89", "warning material-failed 2 5"}},
  };
  for (const Case& each : cases) {
    std::vector<std::string> expected = each.found;
    std::vector<std::string> found = findings_of(inspect(each.bytes));
    std::ranges::sort(expected);
    std::ranges::sort(found);
    EXPECT_EQ(found, expected) << each.about;
    const bool has_error =
        std::ranges::any_of(found, [](const auto& text) { return text.starts_with("error"); });
    EXPECT_EQ(status, has_error ? 1 : 0) << each.about;
  }
}

TEST_F(Inspect, SaysWhatComesOfTheOtherFiles) {
  std::filesystem::create_directories(folder.file("models"));
  folder.write("models/200.stl", "solid\nendsolid\n");
  const std::string row = "DIN;Steel;soft;Rough;VHM;1.05;C45;;metric;;180;;0.2;;;2;3;note\r\n";
  const std::string exchange = folder.write("speeds.csv", row + row + "DIN;Steel\r\n" + row);
  const std::string both =
      tool({{102, "1"}}) + "\r\n" + tool({{2, "X#201"}, {3, "8"}, {89, "1"}, {102, "1"}});
  const std::vector<std::string> args{"--models", folder.file("models"), "--exchange", exchange};
  Json seen = inspect(both, args);
  EXPECT_EQ(findings_of(seen),
            (std::vector<std::string>{"note station-shared 2 89", "warning model-missing 2 102",
                                      "warning row-again 2 null", "error exchange-line 3 null"}));
  EXPECT_EQ(seen["messages"].size(), 1U);
  const Json& solid = seen["tools"][1]["changes"].back();
  EXPECT_EQ(solid["name"], "200.stl") << solid;

  seen = report({folder.file("tools.csv"), folder.write("odd.json", R"({"Name":"x","UnitSystem":72})")});
  EXPECT_EQ(findings_of(seen).back(), "warning document-doubt null null");

  // A base that is given is copied, and stays as it was; settings are the given ones.
  const std::string base = folder.file("shop.db");
  deskhost::knowledge_base_maker(base)();
  const std::string before = read(base);
  seen = inspect(tool({{88, ""}}),
                 {"--kb", base, "--settings", folder.write("my.cfg", "[Default]\r\nTurretID=7\r\n")});
  EXPECT_EQ(findings_of(seen), (std::vector<std::string>{"note material-new 1 5", "warning no-turret 1 88"}));
  EXPECT_EQ(read(base), before);
}

TEST_F(Inspect, EndsWithAStatusAndAHint) {
  const std::string file = folder.write("tools.csv", tool({{21, "9,5"}}));
  const std::string bad = folder.write("bad.json", "{ \"Name\": 1 }");
  struct Use {
    std::vector<std::string> args;
    int status;
    const char* text;
  };
  const std::vector<Use> uses{
      {{file}, 0, ""},
      {{file, "--strict"}, 1, ""},
      {{}, 2, "a tool export file is missing"},
      {{folder.file("none.csv")}, 2, "none.csv"},
      {{folder.file("")}, 2, "can't be read"},
      {{file, folder.file("none.json")}, 2, "none.json"},
      {{file, bad}, 2, "Name"},
      {{file, "--models", folder.file("none")}, 2, "none"},
      {{file, "--kb", folder.file("none.db")}, 2, "none.db"},
      {{file, "--settings", folder.file("none.cfg")}, 2, "none.cfg"},
      {{file, "--json", file}, 2, "would be lost"},
      {{file, "--html", folder.file("no/page.html")}, 2, "can't be written"},
      {{file, "--addin", folder.file("no/x.so")}, 3, "can't be loaded: \""},
      {{file, "--addin", bad}, 3, "can't be loaded"},
  };
  for (const Use& use : uses) {
    std::vector<std::string> args = use.args;
    if (use.status != 3) args.insert(args.end(), {"--addin", COMPONENT});
    say(args);
    EXPECT_EQ(status, use.status) << err.str();
    EXPECT_NE(err.str().find(use.text), std::string::npos) << err.str();
    EXPECT_EQ(err.str().find("hint: ") != std::string::npos, use.status > 1) << err.str();
  }
  EXPECT_EQ(read(file), tool({{21, "9,5"}}));
}

/// All names of objects in `json`.
void collect_names(const Json& json, std::set<std::string>& names) {
  for (const auto& [key, value] : json.items()) {
    if (json.is_object()) names.insert(key);
    if (value.is_structured()) collect_names(value, names);
  }
}

TEST_F(Inspect, WritesWhatItsDescriptionSays) {
  const std::string page = folder.file("page.html");
  const std::string bytes =
      tool({{0, "16"}, {1, "16"}, {2, "<Old> & \"new\"#100"}, {86, "0,4"}}) + "\r\n" + tool({{2, "X#1"}});
  const Json seen = inspect(bytes, {"--html", page});
  std::set<std::string> names;
  collect_names(seen, names);
  const std::string description = read("docs/inspect.md");
  for (const std::string& name : names)
    EXPECT_NE(description.find("`" + name + "`"), std::string::npos) << name;
  for (const std::string& text : findings_of(seen)) {
    const std::string code = text.substr(text.find(' ') + 1);
    EXPECT_NE(description.find("`" + code.substr(0, code.find(' ')) + "`"), std::string::npos) << text;
  }

  EXPECT_EQ(std::system(("tidy -q -e '" + page + "'").c_str()), 0);
  const std::string html = read(page);
  for (const char* const outside : {"<script", "src=", "href=", "url("})
    EXPECT_EQ(html.find(outside), std::string::npos);
  EXPECT_NE(html.find("<mark>&lt;Old&gt;"), std::string::npos);

  std::istringstream text(
      say({folder.file("tools.csv"), folder.file("document.json"), "--addin", COMPONENT}));
  for (std::string line; std::getline(text, line);) {
    EXPECT_LE(std::ranges::count_if(line, [](char c) { return (c & 0xC0) != 0x80; }), 100) << line;
    EXPECT_EQ(line.find('\033'), std::string::npos);
  }
}

/// What a reader of both documents sees: a text for each thing that is otherwise.
using Changes = std::multiset<std::string>;

std::string plain(const Json& value) {
  if (value.is_null()) return "none";
  if (value.is_number_float()) return automation::shortest_text(value);
  std::string text = value.is_string() ? value.get<std::string>() : value.dump();
  // Identifiers of the knowledge base are other ones in each.
  const bool is_identifier =
      text.size() == 32 && text.find_first_not_of("0123456789ABCDEF") == std::string::npos;
  return is_identifier ? "identifier" : text;
}

void compare_members(const std::string& owner, const Json& before, const Json& after, Changes& changes) {
  for (const auto& [name, value] : after.items()) {
    const Json old = before.value(name, Json());
    if (old != value) changes.insert(owner + name + ": " + plain(old) + " > " + plain(value));
  }
}

Json properties_of(const Json& tool) {
  Json all = Json::object();
  for (const Json& each : tool.value("CustomProperties", Json::array())) all[each["Name"]] = each["Value"];
  return all;
}

Json solids_of(const Json& document) {
  Json all = Json::object();
  for (const Json& turret : document["MachineSetup"]["Turrets"]) {
    for (const Json& solid : turret["Solids"]) all[solid["Name"]].push_back({turret["Name"], solid});
  }
  return all;
}

/// By the documents alone.
Changes changes_between(const Json& before, const Json& after) {
  Changes changes;
  for (std::size_t i = 0; i < after["Tools"].size(); ++i) {
    const std::string owner = std::to_string(i) + " ";
    const Json& present = after["Tools"][i];
    const Json old = i < before["Tools"].size() ? before["Tools"][i] : Json({{"Parameters", Json::object()}});
    compare_members(owner + "parameter ", old["Parameters"], present["Parameters"], changes);
    compare_members(owner + "property ", properties_of(old), properties_of(present), changes);
    if (old.value("Flag", false) != present["Flag"]) changes.insert(owner + "flag");
    for (const Json& mark : present["Marked"]) {
      if (!old.contains("Marked") || std::ranges::find(old["Marked"], mark) == old["Marked"].end())
        changes.insert(owner + "mark " + plain(mark));
    }
  }
  Json solids = solids_of(after);
  const Json old = solids_of(before);
  for (const auto& [name, list] : old.items()) solids.emplace(name, nullptr);
  for (const auto& [name, list] : solids.items()) {
    if (list != old.value(name, Json())) changes.insert("solid " + name);
  }
  return changes;
}

void add_reported(const std::string& owner, const Json& list, Changes& changes) {
  for (const Json& each : list) {
    const std::string kind = each["kind"];
    const std::string name = each["name"];
    if (kind == "flag") {
      changes.insert(owner + "flag");
    } else if (kind == "mark") {
      changes.insert(owner + "mark " + name);
    } else if (kind == "solid") {
      changes.insert("solid " + name);
    } else {
      changes.insert(owner + kind + " " + name + ": " + plain(each["before"]) + " > " + plain(each["after"]));
    }
  }
}

Changes changes_in(const Json& report) {
  Changes changes;
  for (std::size_t i = 0; i < report["tools"].size(); ++i) {
    add_reported(std::to_string(i) + " ", report["tools"][i]["changes"], changes);
  }
  add_reported("", report["machine"], changes);
  return changes;
}

/// A shop of the test's own, in which a file is imported as a user does it.
class RealImport {
 public:
  explicit RealImport(const TempFolder& folder) : folder_(folder) {
    std::filesystem::create_directories(folder.file("exchange"));
    folder.write("QV-ToolExport.exe",
                 "#!/bin/sh\ncp \"$QVEspritExportPath/../tools.csv\" "
                 "\"$QVEspritExportPath/QV-Esprit-Export.csv\"\n");
    std::filesystem::permissions(folder.file("QV-ToolExport.exe"), std::filesystem::perms::owner_all);
    platform::set_message_sink([](std::string_view, std::string_view, platform::Icon) {});
  }
  ~RealImport() { platform::set_message_sink({}); }
  RealImport(const RealImport&) = delete;
  RealImport& operator=(const RealImport&) = delete;

  Json import(const std::string& document, const std::string& speeds, const std::string& base) {
    folder_.write("exchange/QV-Esprit-KB-Integration.csv", speeds);
    deskhost::SessionOptions options;
    options.make_addin = load(COMPONENT);
    deskhost::Session session(std::move(options));
    session.offer("KnowledgeBase", deskhost::knowledge_base_maker(base));
    session.connect();
    session.open(document);
    session.command(1);
    session.save(folder_.file("after.json"));
    session.take_down();
    return Json::parse(folder_.read("after.json"));
  }

 private:
  const TempFolder& folder_;
  WithVariable install_{"QVEspritInstallPath", folder_.file("")};
  WithVariable export_{"QVEspritExportPath", folder_.file("exchange")};
  WithVariable models_{"QVEspritUserModelsPath", std::filesystem::absolute("examples/shop/models").string()};
  WithVariable registry_{"QVESPRIT_REGISTRY", folder_.file("registry.reg")};
};

std::vector<std::string> lines_in(const std::string& bytes) {
  std::vector<std::string> lines;
  std::istringstream in(bytes);
  for (std::string line; std::getline(in, line);) lines.push_back(line + "\n");
  return lines;
}

/// A few lines of the shop's, with values that an exporter shouldn't write, and bytes that nobody should.
class Mutations {
 public:
  explicit Mutations(const std::string& bytes) {
    for (const std::string& line : lines_in(bytes)) {
      if (std::ranges::count(line, ';') == 126 && line.find("ToolStyle") == std::string::npos)
        lines_.push_back(line);
    }
  }
  [[nodiscard]] std::string every_sixteenth() const {
    std::string bytes;
    for (std::size_t i = 0; i < lines_.size(); i += 16) bytes += lines_[i];
    return bytes;
  }
  std::string next() {
    std::string bytes = "FileVersion:\"2.0\"\r\n";
    // One line in two is about a tool that the document has.
    for (std::size_t i = number(2); i < 2; ++i) bytes += lines_[number(lines_.size()) / 8 * 8];
    for (std::size_t count = 1 + number(6); count > 0; --count) mutate(bytes);
    return bytes;
  }

 private:
  std::size_t number(std::size_t below) { return random_() % below; }
  void mutate(std::string& bytes) {
    static const std::vector<std::string> values{"",    "0",   "1",           "2.5", "1,5", "-7",
                                                 "abc", "1e9", "99999999999", "X#1", "24"};
    const std::size_t at = bytes.find(';', number(bytes.size()));
    const std::size_t end = bytes.find_first_of(";\r", at == std::string::npos ? at : at + 1);
    if (end == std::string::npos) return;
    switch (number(8)) {
      case 0:
        bytes.insert(at, ";");
        break;
      case 1:
        bytes.erase(end, 1);
        break;
      case 2:
        bytes[at + 1] = static_cast<char>(number(256));
        break;
      default:
        bytes.replace(at + 1, end - at - 1, values[number(values.size())]);
    }
  }

  std::vector<std::string> lines_;
  std::mt19937 random_{16};
};

TEST_F(Inspect, SaysWhatHappensAndNothingElse) {
  const std::string shop = read("examples/shop/shop-tools.csv");
  const std::string speeds = read("examples/shop/shop-speeds.csv");
  Mutations mutations(shop);
  RealImport real(folder);
  const std::string base = folder.file("base.db");
  const auto compare = [&](const std::string& document, const std::string& bytes, const std::string& exchange,
                           const std::string& used) {
    folder.write("tools.csv", bytes);
    std::vector<std::string> words{
        folder.file("tools.csv"), document,     "--models",
        "examples/shop/models",   "--exchange", folder.write("speeds.csv", exchange)};
    if (!used.empty()) words.insert(words.end(), {"--kb", used});
    const Json seen = report(words);
    const Json before = Json::parse(read(document));
    EXPECT_EQ(changes_in(seen), changes_between(before, real.import(document, exchange, used)))
        << bytes.substr(0, 300);
  };
  for (const std::string machine : {"turret", "mill"}) {
    folder.write("tools.csv", mutations.every_sixteenth());
    const Json some = real.import("examples/shop/" + machine + ".json", "", base);
    compare(folder.write(machine + ".json", some.dump()), shop, speeds, base);
  }
  for (int round = 0; round < 200 && !HasFailure(); ++round) {
    compare(folder.file(round % 2 == 0 ? "turret.json" : "mill.json"), mutations.next(), "",
            round % 3 == 0 ? "" : base);
  }
}

}  // namespace
