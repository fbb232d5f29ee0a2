#include "shapes/tool_shift.h"

#include "foundation/failures.h"
#include "foundation/global.h"
#include "shapes/shift_tables.h"
#include "shapes/station_of_tool.h"

namespace shapes {
namespace {

class SavedVector {
 public:
  explicit SavedVector(const host::Tool& tool)
      : x_(global::GetCustomProperty(tool, "ToolShiftXSave", host::type_double)),
        y_(global::GetCustomProperty(tool, "ToolShiftYSave", host::type_double)),
        z_(global::GetCustomProperty(tool, "ToolShiftZSave", host::type_double)) {}

  /// Reads the one property that the component needs.
  [[nodiscard]] double operator[](Component component) const {
    const double length = property(component.source).Value().to_double();
    return component.negated ? 0.0 - length : length;  // no -0 in the user's fields
  }

 private:
  [[nodiscard]] const host::CustomProperty& property(Saved source) const {
    return source == Saved::X ? x_ : source == Saved::Y ? y_ : z_;
  }

  host::CustomProperty x_, y_, z_;
};

void apply_orientation_rule(const host::Tool& tool, const SavedVector& saved) {
  const OrientationRow* row = orientation_row(tool.ToolParameters().Item("Orientation").Value().to_int32());
  if (row == nullptr) return;
  tool.ToolShiftX(saved[row->x]);
  tool.ToolShiftY(saved[row->y]);
  tool.ToolShiftZ(saved[row->z]);
}

void apply_lathe_rule(const host::Tool& tool, const SavedVector& saved) {
  const host::ToolParameters parameters = tool.ToolParameters();
  const std::int32_t position = parameters.Item("LatheToolOrientation").Value().to_int32();
  // A text in the host: converted here and nowhere else, so that one that isn't a number changes nothing.
  const std::int32_t database_position = parameters.Item("CustomSetting6").Value().to_int32();
  if (const LatheRow* row = lathe_row(position, database_position)) {
    tool.ToolShiftX(saved[row->x]);
    tool.ToolShiftZ(saved[row->z]);
  }
  tool.ToolShiftY(saved[Ys]);
}

}  // namespace

void ApplyToolShift(const host::Tool& tool) {
  const SavedVector saved(tool);
  if (global::is_lathe_style(tool.Style())) {
    apply_lathe_rule(tool, saved);
  } else {
    apply_orientation_rule(tool, saved);
  }
}

void ApplySpindleGauge(const host::Tool& tool) {
  constexpr std::int32_t document_in_inches = 70;
  const host::Station station = station_on_mill(tool);
  if (passes([&] { return station.ToolReference() != reference_spindle; })) return;
  double gauge = 0.0;
  skip_failure([&] { gauge = spindle_gauge(global::Application().Document().MillSetup().SpindleSize()); });
  if (passes([] { return global::Application().Document().UnitSystem() == document_in_inches; }))
    gauge /= 25.4;
  skip_failure([&] { gauge -= station.AxialOffset(); });
  skip_failure([&] { tool.ToolParameters().Item("ToolShiftZ").Value(gauge); });
}

}  // namespace shapes
