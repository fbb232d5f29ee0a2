#include "import/follow_up.h"

#include <array>

#include "automation/number.h"
#include "formats/tool_identity.h"
#include "foundation/failures.h"
#include "foundation/global.h"
#include "knowledgebase/KBM.h"
#include "shapes/orientation.h"
#include "shapes/tool_shift.h"
#include "shapes/user_models.h"

namespace mQuorvex {
namespace {

struct Kept {
  const char* property;
  std::int32_t type;
  formats::Field field;
};

constexpr std::array<Kept, 5> kept_properties{{
    {"ToolShiftXSave", host::type_double, field_tool_shift_x},
    {"ToolShiftYSave", host::type_double, field_tool_shift_y},
    {"ToolShiftZSave", host::type_double, field_tool_shift_z},
    {"ToolStyle", host::type_long, field_tool_style},
    {"UserModelFlag", host::type_long, field_user_model_flag},
}};

// A length is read up to the first character that can't belong to it; a whole number goes as its text.
automation::Value kept_value(const Kept& row, const std::string& text) {
  if (row.type == host::type_double) return automation::numeric_prefix(text);
  return text;
}

void keep_properties(const host::Tool& tool, const ToolRecord& record) {
  for (const Kept& row : kept_properties) {
    const host::CustomProperty property = global::GetCustomProperty(tool, row.property, row.type);
    skip_failure([&] { property.Value(kept_value(row, record.text(row.field))); });
  }
}

// Whatever turret the tool stands on.
constexpr std::int32_t turret_of_imported_models = 1;

}  // namespace

void FinishImportedTool(host::Tool tool, const ToolRecord& record, shapes::MachineView& machine) {
  keep_properties(tool, record);
  if (passes([&] { return machine.type() == host::mill_machine; })) {
    shapes::ApplySpindleGauge(tool);
  }
  shapes::UpdateToolOrientation(tool, machine);
  shapes::show_user_model(tool, tool_identity::model_file(record.text(field_tool_id)), machine,
                          turret_of_imported_models);
  if (!global::is_lathe_style_text(record.text(field_tool_style))) {
    skip_failure([&] { global::ShapeManager().RefreshToolShape(tool); });
  }
  skip_failure([&] { KBM::StoreToolInKnowledgeBase(tool.ToolParameters(), record.text(field_tool_group)); });
}

}  // namespace mQuorvex
