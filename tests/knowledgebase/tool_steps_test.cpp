#include "automation/number.h"
#include "knowledgebase/kb_test.h"

namespace kb_testing {
namespace {

using Lines = std::vector<std::string>;

class ToolSteps : public KnowledgeBaseTest {
 protected:
  Lines links() {
    return rows(
        "select fldName_tblCuttingToolGroup, fldParentName_tblCuttingToolGroup, fldToolID_tblKbTool from "
        "tblKbToolGroupLink, tblKbTool, tblCuttingToolGroup where fldpkID_tblKbTool="
        "fldfkToolRecordID_tblKbToolGroupLink and fldpkNameIdentifierID_tblCuttingToolGroup="
        "fldfkGroupID_tblKbToolGroupLink order by 1, 3");
  }
  std::string stored(const std::shared_ptr<deskhost::Tool>& tool, const char* parameter) {
    const std::int16_t code = host::ToolParameters(tool).Item(parameter).Code();
    const Lines found =
        rows("select fldValue_tblKbToolParameter from tblKbToolParameter where fldCode_tblKbToolParameter=" +
             std::to_string(code));
    return found.size() == 1 ? found[0] : std::to_string(found.size()) + " rows";
  }
};

TEST_F(ToolSteps, MaterialIsFoundByNameUnderAnyStandardOrMade) {
  const std::string made = KBM::GetCutterMaterialId("Härt €");
  EXPECT_EQ(KBM::GetCutterMaterialId("Härt €"), made);
  EXPECT_NE(KBM::GetCutterMaterialId("härt €"), made);
  EXPECT_NE(KBM::GetCutterMaterialId("Härt € "), made) << "blanks belong to the name";
  EXPECT_EQ(rows("select fldName_tblPartMaterialStandard from tblPartMaterialStandard"),
            (Lines{"Quorvex CC"}));

  import(Line{.cutter = "CBN"}.text());
  const Lines of_din = rows(
      "select fldpkNameIdentifierID_tblCutterMaterial from tblCutterMaterial where "
      "fldName_tblCutterMaterial='CBN'");
  EXPECT_EQ(Lines{KBM::GetCutterMaterialId("CBN")}, of_din);
  EXPECT_EQ(count("tblCutterMaterial"), 4);
}

TEST_F(ToolSteps, ToolIsStoredWithItsParametersAndLinkedOnce) {
  const auto tool = add_tool("Mill D10#100234");
  const host::ToolParameters parameters(tool);
  parameters.Item("ToolDiameter").Value(10.5);
  parameters.Item("Comment").Value("long, 0,5");
  automation::set_decimal_sign(',');
  KBM::StoreToolInKnowledgeBase(parameters, "Mills");
  EXPECT_EQ(count("tblKbToolParameter"), parameters.Count());
  EXPECT_EQ(stored(tool, "ToolDiameter"), "10.5");
  EXPECT_EQ(stored(tool, "Comment"), "long, 0,5") << "only numbers get a point";

  parameters.Item("ToolDiameter").Value(12.25);
  KBM::StoreToolInKnowledgeBase(parameters, "Mills");
  automation::set_decimal_sign('.');
  EXPECT_EQ(stored(tool, "ToolDiameter"), "12.25");
  EXPECT_EQ(links(), (Lines{"Quorvex - Mills|Quorvex - Tools|Mill D10#100234"}));
  EXPECT_EQ(rows("select fldKind_tblKbTool from tblKbTool"), (Lines{"1"}));

  KBM::StoreToolInKnowledgeBase(parameters, "");
  EXPECT_EQ(links(), (Lines{"Quorvex - |Quorvex - Tools|Mill D10#100234",
                            "Quorvex - Mills|Quorvex - Tools|Mill D10#100234"}));
  EXPECT_EQ(count("tblKbTool"), 1);
}

TEST_F(ToolSteps, UpdateLeavesNoParameterOfAnEarlierLongerTool) {
  const auto tool = add_tool("T#1");
  KBM::StoreToolInKnowledgeBase(host::ToolParameters(tool), "G");
  base_->query(
      "insert into tblKbToolParameter select fldfkToolRecordID_tblKbToolParameter, 9999, 1, 'rest' from "
      "tblKbToolParameter where fldIndex_tblKbToolParameter=0");
  KBM::StoreToolInKnowledgeBase(host::ToolParameters(tool), "G");
  EXPECT_EQ(count("tblKbToolParameter"), host::ToolParameters(tool).Count());
}

// A tool whose parameters are read one by one, some of which refuse.
struct StubbornTool : automation::Object {
  struct Parameter : automation::Object {
    Value code;
    Value value;
    Value get(Member member, automation::Args /*args*/) override {
      const Value& result = member == Member("Code") ? code : value;
      if (result.is(Value::Kind::Missing)) throw Failure("refused");
      return result;
    }
    void put(Member, automation::Args, const Value&) override {}
    Value call(Member, automation::Args) override { return {}; }
  };
  Value tool_id = "Odd#1";
  std::vector<std::pair<Value, Value>> parameters;

  static automation::Ref parameter(Value code, Value value) {
    auto result = std::make_shared<Parameter>();
    result->code = std::move(code);
    result->value = std::move(value);
    return result;
  }
  Value get(Member member, automation::Args args) override {
    if (member == Member("Count")) return static_cast<std::int32_t>(parameters.size());
    if (member == Member("Kind")) return std::int16_t{7};
    if (args[0].text() != nullptr) return parameter(std::int16_t{0}, tool_id);
    const auto& [code, value] = parameters.at(static_cast<std::size_t>(args[0].to_int32() - 1));
    return parameter(code, value);
  }
  void put(Member, automation::Args, const Value&) override {}
  Value call(Member, automation::Args) override { return {}; }
};

TEST_F(ToolSteps, WhatCantBeReadLeavesWhatTheParameterBeforeHad) {
  const auto tool = std::make_shared<StubbornTool>();
  tool->parameters = {{automation::missing, automation::missing},
                      {std::int16_t{5}, "a,b"},
                      {std::int16_t{6}, automation::missing},
                      {automation::missing, 0.5},
                      {std::int16_t{8}, automation::nothing}};
  KBM::StoreToolInKnowledgeBase(host::ToolParameters(tool), "G");
  EXPECT_EQ(
      rows("select fldCode_tblKbToolParameter, fldValue_tblKbToolParameter from tblKbToolParameter order "
           "by fldIndex_tblKbToolParameter"),
      (Lines{"0|", "5|a,b", "6|a,b", "6|0.5", "8|0.5"}));

  tool->tool_id = "";
  KBM::StoreToolInKnowledgeBase(host::ToolParameters(tool), "G");
  EXPECT_EQ(count("tblKbTool"), 1) << "a tool without an id isn't stored";
  EXPECT_EQ(count("tblKbToolGroupLink"), 1);
}

TEST_F(ToolSteps, ApostrophesFailBeforeTheDatabaseSeesThem) {
  const auto tool = add_tool("T'1#5");
  for (const std::string name : {"o'", "o''; drop table tblKbTool; --", "'"}) {
    EXPECT_THROW(KBM::GetCutterMaterialId(name), Failure) << name;
    EXPECT_THROW(KBM::StoreToolInKnowledgeBase(host::ToolParameters(tool), name), Failure) << name;
  }
  EXPECT_EQ(count("tblKbTool") + count("tblCuttingToolGroup") + count("tblCutterMaterial"), 0);
  KBM::StoreToolInKnowledgeBase(host::ToolParameters(tool), "fine");
  EXPECT_EQ(links(), (Lines{"Quorvex - fine|Quorvex - Tools|T'1#5"})) << "a store takes any text";
}

}  // namespace
}  // namespace kb_testing
