#include <filesystem>

#include "knowledgebase/kb_test.h"

namespace kb_testing {
namespace {

using Lines = std::vector<std::string>;
using Bases = KnowledgeBaseTest;

TEST_F(Bases, MissingTablesShowTheDatabasesText) {
  for (const deskhost::Table* table : deskhost::all_tables())
    base_->query("drop table " + std::string(table->name));
  import(Line{}.text() + Line{}.text());
  ASSERT_EQ(messages_.size(), 1U);
  EXPECT_NE(messages_[0].find("Knowledge base: "), std::string::npos) << messages_[0];
  EXPECT_NE(messages_[0].find("tbl"), std::string::npos) << messages_[0];
  EXPECT_THROW(KBM::GetCutterMaterialId("HM"), Failure);
}

TEST_F(Bases, ReadOnlyBaseIsReadAndRefusesRows) {
  import(Line{}.text());
  const std::string id = rows("select fldpkNameIdentifierID_tblCutterMaterial from tblCutterMaterial").at(0);
  KBM::GetCutterMaterialId("HM");
  if (postgresql().empty()) {
    std::string source = deskhost::base_source(source_).connection_string + "?mode=ro";
    source.insert(source.find("Database=") + std::string("Database=").size(), "file:");
    offer(deskhost::knowledge_base_maker(source));
  } else {
    base_->query("drop owned by kb_reader");
    for (const deskhost::Table* table : deskhost::all_tables()) {
      base_->query("grant select on " + std::string(table->name) + " to kb_reader");
    }
    offer(deskhost::knowledge_base_maker(source_ + ";UID=kb_reader"));
  }
  EXPECT_EQ(KBM::GetCutterMaterialId("HM"), id);
  EXPECT_THROW(KBM::GetCutterMaterialId("other"), Failure);
  import(Line{.standard = "New"}.text());
  EXPECT_EQ(messages_.size(), 1U);
  EXPECT_EQ(count("tblPartMaterialStandard"), 2);
}

TEST_F(Bases, RowsOfAllRecordsetsAreFoundByNameRegardlessOfCase) {
  import(Line{.note = "a"}.text() + Line{.note = "b"}.text());
  const host::KnowledgeBase knowledge_base(deskhost::knowledge_base_maker(source_)());
  const host::Recordset found =
      knowledge_base.Database().Connection().Execute("select * from tblSpeedFeedData");
  EXPECT_EQ(found.RecordCount(), 2);
  found.move_from_first(1);
  EXPECT_EQ(found.Fields().Item("FLDNOTE_tblspeedfeeddata").Value().to_text(), "b");
  EXPECT_THROW((void)found.Fields().Item("fldNope").Value(), Failure);
  found.move_from_first(2);
  EXPECT_TRUE(found.at_eof());
  EXPECT_THROW((void)found.Fields().Item("fldNote_tblSpeedFeedData").Value(), Failure);
  found.MoveFirst();
  EXPECT_FALSE(found.at_eof());
}

TEST_F(Bases, ParametersAreStoredAsAWholeOrNotAtAll) {
  const host::KnowledgeBase knowledge_base(deskhost::knowledge_base_maker(source_)());
  const host::RecordRef tool = knowledge_base.KbTools().Find("T#1");
  const host::KbTools tools = knowledge_base.KbTools();
  EXPECT_EQ(tools.Find("T#1")->at("Id").to_text(), "");
  ASSERT_TRUE(tools.Add(tool));
  const auto row = [&](const Value& code) {
    auto record = std::make_shared<automation::Record>();
    record->members = {{"ToolRecordId", tool->at("Id")}, {"Value", "v"}, {"Code", code}};
    return Value(record);
  };
  const host::KbToolParameters parameters = knowledge_base.KbToolParameters();
  EXPECT_THROW(parameters.Add({row(std::int16_t{1}), row("no number")}), Failure);
  EXPECT_EQ(count("tblKbToolParameter"), 0);
  EXPECT_EQ(parameters.Find("T#1"), "");
  parameters.Add({row(std::int16_t{1})});
  parameters.Add({row(std::int16_t{2}), row(std::int16_t{3})});
  EXPECT_EQ(rows("select fldCode_tblKbToolParameter from tblKbToolParameter"), (Lines{"1"}))
      << "another seat's parameters stay whole";
  EXPECT_EQ(parameters.Find("T#1"), "T#1");
  const host::RecordRef again = tools.Find("T#1");
  EXPECT_TRUE(tools.Add(again));
  EXPECT_EQ(again->at("Id").to_text(), tool->at("Id").to_text());
}

TEST_F(Bases, BaseThatGoesAwayFailsAndIsThereAgainForTheNextImport) {
  if (postgresql().empty()) GTEST_SKIP() << "a file has no connection that could be cut";
  import(Line{}.text());
  base_->query(
      "select pg_terminate_backend(pid) from pg_stat_activity where pid<>pg_backend_pid() and "
      "backend_type='client backend'");
  import(Line{.note = "cut"}.text());
  EXPECT_EQ(messages_.size(), 1U);
  messages_.clear();
  import(Line{.note = "again"}.text());
  EXPECT_EQ(messages_, Lines{});
  EXPECT_EQ(rows("select fldNote_tblSpeedFeedData from tblSpeedFeedData"), (Lines{"again"}));
}

TEST(BaseSources, FileOrConnectionString) {
  EXPECT_EQ(deskhost::base_source("DSN=shop").connection_string, "DSN=shop");
  EXPECT_THROW(deskhost::base_source("a;b.db"), Failure);
  EXPECT_THROW(deskhost::knowledge_base_maker("/no/such/folder/kb.db"), Failure);
  const testing_support::TempFolder folder;
  const std::string file = folder.file("kb.db");
  {
    deskhost::BaseSource temporary = deskhost::base_source(file);
    temporary.is_temporary = true;
    const deskhost::Base base(temporary, deskhost::Base::Open::create);
    EXPECT_TRUE(std::filesystem::exists(file));
  }
  for (const char* ending : {"", "-wal", "-shm"})
    EXPECT_FALSE(std::filesystem::exists(file + ending)) << ending;
}

}  // namespace
}  // namespace kb_testing
