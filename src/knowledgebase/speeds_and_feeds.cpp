#include <array>
#include <optional>
#include <string>
#include <unordered_map>

#include "formats/exchange_line.h"
#include "formats/text_lines.h"
#include "foundation/failures.h"
#include "foundation/global.h"
#include "host/knowledge_base_records.h"
#include "knowledgebase/KBM.h"
#include "knowledgebase/knowledge_base_access.h"
#include "knowledgebase/material_tools.h"
#include "platform/files.h"

namespace KBM {

using formats::ExchangeLine;
namespace {

using automation::Failure;
using automation::Value;

struct SpeedFeedValue {
  const char* metric;
  const char* imperial;
  double ExchangeLine::*value;
};
constexpr std::array<SpeedFeedValue, 4> speed_feed_values{{
    {"ValueAMetric", "ValueAImperial", &ExchangeLine::ValueA},
    {"ValueBMetric", "ValueBImperial", &ExchangeLine::ValueB},
    {"ValueDMetric", "ValueDImperial", &ExchangeLine::ValueD},
    {"ValueCMetric", "ValueCImperial", &ExchangeLine::ValueC},
}};

constexpr std::array<Condition, 4> speed_feed_conditions{{
    {"select * from tblSpeedFeedData where fldfkOperationID_tblSpeedFeedData='", "OperationId"},
    {" and fldfkPartMaterialGroupID_tblSpeedFeedData='", "PartMaterialGroupId"},
    {" and fldfkCutterMaterialID_tblSpeedFeedData='", "CutterMaterialId"},
    {" and fldStandard_tblSpeedFeedData='", "StandardId"},
}};

/// One run over the exchange file. The records live as long as it: a line overwrites only what it has, so a
/// metric line stores the imperial values of an earlier one too.
class SpeedFeedRun {
 public:
  /// Throws Failure; what the line stored by then stays.
  void store(const ExchangeLine& line);

 private:
  std::string named(const Rows& rows, const host::RecordRef& record, const std::string& name);
  void enter_in_material_index(const std::string& group_id, const std::string& material_id);
  void fill_speed_feed(const ExchangeLine& line);
  void store_speed_feed(const std::string& condition_name);

  KnowledgeBaseAccess access_;
  MaterialTools tools_;
  host::RecordRef standard_ = host::make_record(host::StandardRecord);
  host::RecordRef material_ = host::make_record(host::PartMaterialRecord);
  host::RecordRef class_ = host::make_record(host::NamedRecord);
  host::RecordRef condition_ = host::make_record(host::NamedRecord);
  host::RecordRef group_ = host::make_record(host::PartMaterialGroupRecord);
  host::RecordRef operation_ = host::make_record(host::NamedRecord);
  host::RecordRef cutter_material_ = host::make_record(host::NamedRecord);
  host::RecordRef speed_feed_ = host::make_record(host::SpeedFeedRecord);
  std::string standard_id_;
  std::unordered_map<std::string, std::int32_t> lines_of_condition_;
};

void SpeedFeedRun::store(const ExchangeLine& line) {
  standard_->at("Name") = line.StandardName;
  standard_id_ = access_.find_or_create(part_material_standards, standard_);
  const std::string material_id = named(part_materials, material_, line.material_name());
  const std::string class_id = named(part_material_classes, class_, line.ClassName);
  const std::string condition_id = named(part_material_conditions, condition_, line.ConditionName);
  group_->at("ConditionId") = condition_id;
  group_->at("ClassId") = class_id;
  group_->at("StandardId") = standard_id_;
  const std::string group_id = access_.find_or_create(part_material_groups, group_);
  // The entry is there already for all but the first line of a material in a group.
  skip_failure([&] { enter_in_material_index(group_id, material_id); });
  const std::string operation_id = named(kb_operations, operation_, line.OperationName);
  const std::string cutter_id = named(cutter_materials, cutter_material_, line.CutterMaterialName);
  tools_.assign(line.CutterMaterialName, cutter_id);

  speed_feed_->at("StandardId") = standard_id_;
  speed_feed_->at("CutterMaterialId") = cutter_id;
  speed_feed_->at("OperationId") = operation_id;
  speed_feed_->at("PartMaterialGroupId") = group_id;
  fill_speed_feed(line);
  store_speed_feed(line.ConditionName);
}

std::string SpeedFeedRun::named(const Rows& rows, const host::RecordRef& record, const std::string& name) {
  record->at("Name") = name;
  record->at("StandardId") = standard_id_;
  return access_.find_or_create(rows, record);
}

void SpeedFeedRun::enter_in_material_index(const std::string& group_id, const std::string& material_id) {
  const std::array<std::string, 7> pieces{
      "insert into tblPartMaterialIndex (fldpkPartMaterialGroupId_tblPartMaterialIndex,"
      "fldStandard_tblPartMaterialIndex,fldpkPartmaterialId_tblPartMaterialIndex) values ('",
      group_id,
      "','",
      standard_id_,
      "','",
      material_id,
      "')"};
  access_.execute(statement(pieces));
}

void SpeedFeedRun::fill_speed_feed(const ExchangeLine& line) {
  for (const SpeedFeedValue& row : speed_feed_values) {
    speed_feed_->at(line.is_metric() ? row.metric : row.imperial) = line.*row.value;
  }
  speed_feed_->at("Note") = line.Note;
  speed_feed_->at("Factor") = 1.0;
}

void SpeedFeedRun::store_speed_feed(const std::string& condition_name) {
  const std::string select = select_of(speed_feed_conditions, speed_feed_);
  // The n-th line of a condition belongs to the n-th row of its select, whatever else the lines name.
  const std::int32_t n = ++lines_of_condition_[condition_name];
  const host::Recordset rows = access_.execute(select);
  const host::KnowledgeBase& knowledge_base = access_.knowledge_base();
  if (n <= rows.RecordCount()) {
    rows.MoveFirst();
    rows.move_from_first(n - 1);
    speed_feed_->at("Id") = rows.Fields().Item("fldpkID_tblSpeedFeedData").Value().to_text();
    knowledge_base.SpeedFeedRows().Update(speed_feed_);
  } else {
    speed_feed_->at("Id") = knowledge_base.NewId();
    knowledge_base.SpeedFeedRows().Add(speed_feed_);
  }
}

/// Warns of a document in which no material was chosen, where the settings ask for it.
void closing_check() {
  const host::CustomProperties properties = global::Application().Document().CustomProperties();
  // From here on a failing statement is dropped, and a test that fails counts as passed.
  std::string output;
  skip_failure([&] { output = global::setting("OutputMSG", "0"); });
  if (!passes([&] { return Value(output).to_double() == 1; })) return;
  if (!passes([&] { return equal(properties.Item("KBM_StandardName").Value(), "None"); })) return;

  const clsIniFile& reader = global::open_texts("KBM", skipped);
  std::string no_material;
  std::string no_speeds_and_feeds;
  skip_failure([&] { no_material = reader.GetString("noMat", "no material selected in the kbm setup!"); });
  skip_failure([&] { no_speeds_and_feeds = reader.GetString("noFS", "no speeds and feeds will appear!"); });
  global::show_message(no_material + "\r\n" + no_speeds_and_feeds);
}

}  // namespace

void ImportSpeedsAndFeeds() {
  try {
    SpeedFeedRun run;
    const std::string path = global::GetEnvPath("QVEspritExportPath") + "\\QV-Esprit-KB-Integration.csv";
    formats::TextLines lines(platform::read_file(path));
    while (const std::optional<std::string_view> line = lines.next()) {
      if (!formats::is_comment(*line)) run.store(formats::parse_exchange_line(*line));
    }
    closing_check();
  } catch (const Failure& failure) {
    global::show_message(failure.what());
  }
}

}  // namespace KBM
