#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "deskhost/knowledgebase/knowledge_base.h"
#include "deskhost/knowledgebase/schema.h"
#include "deskhost/model/document.h"
#include "foundation/global.h"
#include "host/knowledge_base.h"
#include "knowledgebase/KBM.h"
#include "platform/component_runtime.h"
#include "platform/message_box.h"
#include "platform/temp_folder.h"

namespace kb_testing {

using automation::Failure;
using automation::Member;
using automation::Value;

/// The host, as far as the knowledge base's procedures look at it.
class FakeHost : public deskhost::DeskObject {
 public:
  [[nodiscard]] std::string trace_name() const override { return "Application"; }
  Value get(Member member, automation::Args args) override {
    if (member == Member("Document")) return automation::Ref(document);
    if (member == Member("Configuration")) return automation::Ref(shared_from_this());
    if (member == Member("Language")) return 0;
    return DeskObject::get(member, args);
  }

  deskhost::DeskRef desk = std::make_shared<deskhost::Desk>();
  std::shared_ptr<deskhost::Document> document = std::make_shared<deskhost::Document>(desk, "Flange.esp");
};

/// The server of this run, or empty: then the tests run on a SQLite file each.
inline std::string postgresql() {
  const char* text = std::getenv("QVESPRIT_TEST_POSTGRESQL");
  return text == nullptr ? "" : text;
}

/// A document, an empty knowledge base, and the folder of the exchange file.
class KnowledgeBaseTest : public testing::Test {
 protected:
  KnowledgeBaseTest() {
    source_ = postgresql().empty() ? folder_.file("kb.db") : postgresql();
    if (!postgresql().empty()) drop_tables();
    base_ = std::make_unique<deskhost::Base>(deskhost::base_source(source_), deskhost::Base::Open::create);
    offer(deskhost::knowledge_base_maker(source_));
    platform::set_message_sink(
        [this](std::string_view text, std::string_view title, platform::Icon /*icon*/) {
          messages_.emplace_back(text);
          EXPECT_EQ(title, "QVEsprit");
        });
    global::AddInName() = "QVEsprit";
    application_ = host::Application(host_);
    global::lend_application(application_);
  }
  ~KnowledgeBaseTest() override {
    global::take_application_back(application_);
    global::release_text_reader();
    platform::set_message_sink({});
    platform::offer_classes({});
  }

  static void offer(std::function<automation::Ref()> maker) {
    platform::offer_classes([maker = std::move(maker)](std::string_view name) {
      return name == "EspritKnowledgeBase.KnowledgeBase" ? maker() : nullptr;
    });
  }
  void drop_tables() {
    deskhost::Base base(deskhost::base_source(source_), deskhost::Base::Open::to_read);
    for (const deskhost::Table* table : deskhost::all_tables()) {
      base.query("drop table if exists " + std::string(table->name));
    }
  }

  /// The rows of a select, a line for each, "|" between the columns.
  std::vector<std::string> rows(const std::string& select) {
    std::vector<std::string> lines;
    for (const auto& row : base_->query(select).rows) {
      std::string line;
      for (const Value& value : row) line += (line.empty() ? "" : "|") + value.to_text();
      lines.push_back(line);
    }
    return lines;
  }
  int count(const std::string& table) { return std::stoi(rows("select count(*) from " + table).at(0)); }

  std::shared_ptr<deskhost::Tool> add_tool(const std::string& tool_id, std::int32_t tool_class = 1) {
    auto tool = deskhost::Tool::make(*host_->desk, tool_class);
    host::ToolParameters(tool).Item("ToolID").Value(tool_id);
    host_->document->tools().append(tool);
    return tool;
  }

  void import(const std::string& exchange_file) {
    folder_.write("QV-Esprit-KB-Integration.csv", exchange_file);
    KBM::ImportSpeedsAndFeeds();
  }

  testing_support::TempFolder folder_;
  testing_support::WithVariable path_{"QVEspritExportPath", folder_.file(".")};
  std::string source_;
  std::unique_ptr<deskhost::Base> base_;
  std::shared_ptr<FakeHost> host_ = std::make_shared<FakeHost>();
  host::Application application_;
  std::vector<std::string> messages_;
};

/// A line of the exchange file; what a test doesn't name has a value of its own.
struct Line {
  std::string standard = "DIN";
  std::string cls = "Steel";
  std::string condition = "Soft";
  std::string operation = "Rough";
  std::string cutter = "HM";
  std::string column1 = "1.0503";
  std::string column2 = "C45";
  std::string column3 = "unalloyed";
  std::string units = "metric";
  std::string a = "1";
  std::string note = "note";

  [[nodiscard]] std::string text() const {
    return standard + ";" + cls + ";" + condition + ";" + operation + ";" + cutter + ";" + column1 + ";" +
           column2 + ";" + column3 + ";" + units + ";;" + a + ";;2;;;3;4;" + note + "\r\n";
  }
};

}  // namespace kb_testing
