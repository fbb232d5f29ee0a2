#include <fstream>

#include "knowledgebase/kb_test.h"
#include "platform/files.h"

namespace kb_testing {
namespace {

using Lines = std::vector<std::string>;

class SpeedsAndFeeds : public KnowledgeBaseTest {
 protected:
  /// Operation, A metric, A imperial and note of each row, in the order of adding.
  Lines speeds() {
    return rows(
        "select fldName_tblOperation, fldValueAMetric_tblSpeedFeedData, fldValueAImperial_tblSpeedFeedData, "
        "fldNote_tblSpeedFeedData from tblSpeedFeedData, tblOperation where "
        "fldpkNameIdentifierID_tblOperation=fldfkOperationID_tblSpeedFeedData order by "
        "fldSequence_tblSpeedFeedData");
  }
  Lines keyed_rows() {
    Lines lines;
    for (const deskhost::Table* table : deskhost::all_tables()) {
      if (table == &deskhost::tables::speed_feed_data) continue;
      for (std::string& row : rows("select * from " + std::string(table->name) + " order by 1, 2")) {
        lines.push_back(table->name + ("|" + std::move(row)));
      }
    }
    return lines;
  }
};

TEST_F(SpeedsAndFeeds, SecondLineOfAConditionSettlesInTheThirdRun) {
  const auto file = [](const std::string& run) {
    return "* a comment\r\n" + Line{.operation = "Rough", .note = run}.text() +
           Line{.operation = "Finish", .note = run}.text();
  };
  import(file("1"));
  EXPECT_EQ(speeds(), (Lines{"Rough|1|0|1", "Finish|1|0|1"}));
  const Lines first = keyed_rows();
  EXPECT_EQ(first.size(), 9U);
  import(file("2"));
  EXPECT_EQ(speeds(), (Lines{"Rough|1|0|2", "Finish|1|0|1", "Finish|1|0|2"}));
  import(file("3"));
  EXPECT_EQ(speeds(), (Lines{"Rough|1|0|3", "Finish|1|0|1", "Finish|1|0|3"}));
  EXPECT_EQ(keyed_rows(), first);
  EXPECT_EQ(messages_, Lines{});
}

TEST_F(SpeedsAndFeeds, LinesGoToTheRowsInTheOrderOfAdding) {
  import(Line{.note = "a"}.text() + Line{.note = "b"}.text());
  import(Line{.note = "A"}.text() + Line{.note = "B"}.text() + Line{.note = "C"}.text());
  EXPECT_EQ(speeds(), (Lines{"Rough|1|0|A", "Rough|1|0|B", "Rough|1|0|C"}));
  import(Line{.note = "x"}.text() + Line{.note = "y"}.text() + Line{.note = "z"}.text());
  EXPECT_EQ(speeds(), (Lines{"Rough|1|0|x", "Rough|1|0|y", "Rough|1|0|z"}));
}

TEST_F(SpeedsAndFeeds, MetricLineStoresTheImperialValuesOfTheLineBefore) {
  import(Line{.units = "Metric", .a = "12.5mm/min"}.text() + Line{.a = "12,5"}.text() +
         Line{.units = "", .a = ""}.text());
  EXPECT_EQ(speeds(), (Lines{"Rough|0|12.5|note", "Rough|12|12.5|note", "Rough|12|0|note"}));
  EXPECT_EQ(rows("select fldValueBMetric_tblSpeedFeedData, fldValueCMetric_tblSpeedFeedData, "
                 "fldValueDMetric_tblSpeedFeedData, fldValueBImperial_tblSpeedFeedData, "
                 "fldValueCImperial_tblSpeedFeedData, fldValueDImperial_tblSpeedFeedData, "
                 "fldFactor_tblSpeedFeedData from tblSpeedFeedData order by fldSequence_tblSpeedFeedData")[1],
            "2|3|4|2|3|4|1");
}

TEST_F(SpeedsAndFeeds, MaterialNameStandsInColumnsOfCharacters) {
  import(Line{.column1 = "0123456789", .column2 = "", .column3 = "It's over twenty's"}.text());
  EXPECT_EQ(messages_.size(), 1U) << "an apostrophe among the characters that are used";
  messages_.clear();
  import(Line{.column1 = "0123456789",
              .column2 = "\xD6lst\xE4hle \xDC\xDC\xDC\xDC\xDC\xDC\xDC\xDC\xDC\xDC",
              .column3 = "\xC4 is twenty and more's"}
             .text() +
         Line{.column1 = "1", .column2 = "2", .column3 = ""}.text());
  EXPECT_EQ(messages_, Lines{});
  EXPECT_EQ(rows("select fldName_tblPartMaterial from tblPartMaterial order by 1"),
            (Lines{"0123456789 | Ölstähle ÜÜÜÜÜÜÜÜÜÜ  | Ä is twenty and more",
                   "1          | 2                    | "}));
}

TEST_F(SpeedsAndFeeds, BadLineEndsTheRunAndKeepsWhatStandsBeforeIt) {
  struct Case {
    std::string bad;
    std::string text;
    int standards;
  };
  const std::string too_long = automation::text_of(automation::Error::invalid_argument);
  const std::string too_short = automation::text_of(automation::Error::subscript_out_of_range);
  const auto apostrophe = [](const std::string& value) {
    return "Syntax error in a statement for the knowledge base: apostrophe in \"" + value + "\"";
  };
  const std::vector<Case> cases{
      {"\r\n", too_short, 1},
      {" * no comment\r\n", too_short, 1},
      {"a;b;c;d;e;f;g;h;i;j;k;l;m;n;o;p;q\r\n", too_short, 1},
      {Line{.standard = "New", .column1 = "01234567890"}.text(), too_long, 2},
      {Line{.standard = "New", .column2 = "012345678901234567890"}.text(), too_long, 2},
      {Line{.standard = "N'"}.text(), apostrophe("N'"), 1},
      {Line{.standard = "New", .cls = "c''"}.text(), apostrophe("c''"), 2},
      {Line{.standard = "New", .condition = "' or '1'='1"}.text(), apostrophe("' or '1'='1"), 2},
      {Line{.standard = "New", .operation = "o'"}.text(), apostrophe("o'"), 2},
      {Line{.standard = "New", .cutter = "'"}.text(), apostrophe("'"), 2},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.bad);
    for (const deskhost::Table* table : deskhost::all_tables())
      base_->query("delete from " + std::string(table->name));
    messages_.clear();
    import(Line{.note = "before"}.text() + row.bad + Line{.standard = "After"}.text());
    EXPECT_EQ(messages_, Lines{row.text});
    EXPECT_EQ(speeds(), (Lines{"Rough|1|0|before"}));
    EXPECT_EQ(count("tblPartMaterialStandard"), row.standards) << "what the line did before it stays";
  }
  messages_.clear();
  import("*only\r* comments\r\n");
  EXPECT_EQ(messages_, Lines{});
  platform::delete_file(folder_.file("QV-Esprit-KB-Integration.csv"));
  KBM::ImportSpeedsAndFeeds();
  EXPECT_EQ(messages_, Lines{automation::text_of(automation::Error::file_not_found)});
}

TEST_F(SpeedsAndFeeds, ToolsOfTheMaterialGetItsIdentifierAndTheMark) {
  const std::vector<std::pair<std::string, bool>> ids{
      {"Mill#HM", true}, {"HM", false}, {"a#b#HM", false}, {"Drill D3#HM", true}, {"x#hm", false},
      {"", false},       {"#HM", true}, {"x#HM ", false},  {"x#CBN", false}};
  for (const auto& [tool_id, taken] : ids) add_tool(tool_id);
  import(Line{.cutter = "none"}.text() + Line{}.text());
  const std::string id = rows(
                             "select fldpkNameIdentifierID_tblCutterMaterial from tblCutterMaterial where "
                             "fldName_tblCutterMaterial='HM'")
                             .at(0);
  const auto parameter = deskhost::catalogue::find("ToolMaterial");
  ASSERT_TRUE(parameter.has_value());
  for (std::size_t i = 0; i < ids.size(); ++i) {
    const deskhost::Tool& tool = *host_->document->tools().at(i);
    EXPECT_EQ(tool.value("ToolMaterial").to_text(), ids[i].second ? id : "") << ids[i].first;
    EXPECT_EQ(tool.marked(*parameter), ids[i].second) << ids[i].first;
  }
}

TEST_F(SpeedsAndFeeds, ClosingCheckWarnsOfADocumentWithoutMaterial) {
  if (!postgresql().empty()) GTEST_SKIP() << "the settings file beside the test program is the other run's";
  const std::string settings = platform::native_path(platform::component_folder() + "\\QVEsprit.cfg");
  struct Case {
    const char* setting;   // null: none
    const char* standard;  // null: no such property
    bool warns;
  };
  const std::vector<Case> cases{{nullptr, "None", false}, {"0", "None", false},  {"1", "None", true},
                                {"1", "DIN", false},      {"1", nullptr, true},  {"yes", "None", true},
                                {"", nullptr, true},      {"1.0", "None", true}, {"2", "None", false},
                                {"1", "none", false},     {"yes", "DIN", false}};
  for (const Case& row : cases) {
    SCOPED_TRACE(row.setting == nullptr ? "no setting" : row.setting);
    std::ofstream(settings) << "[Default]\r\n"
                            << (row.setting == nullptr ? "" : "OutputMSG=" + std::string(row.setting))
                            << "\r\n";
    host_->document = std::make_shared<deskhost::Document>(host_->desk, "Flange.esp");
    if (row.standard != nullptr) {
      host_->document->custom_properties().add("KBM_StandardName", deskhost::type_string, row.standard);
    }
    messages_.clear();
    import("");
    const Lines warning{"no material selected in the kbm setup!\r\nno speeds and feeds will appear!"};
    EXPECT_EQ(messages_, row.warns ? warning : Lines{});
  }
  std::remove(settings.c_str());
}

}  // namespace
}  // namespace kb_testing
