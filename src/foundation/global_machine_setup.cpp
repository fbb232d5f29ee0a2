// The machine setup's parameters, as module global gives them.

#include <array>

#include "foundation/global.h"

namespace global {
namespace {

using automation::Value;

constexpr std::int32_t mill_setup = 1;
constexpr std::int32_t turret_setup = 2;

enum class Source {
  document_name,
  program_number,
  program_name,
  custom_setting,
  custom_setting_text,
  origin_x,
  origin_y,
  origin_z,
  nothing_behind,
};

/// Parameters `first` to `last`; a numbered setting counts from 1 at `first`.
struct Row {
  std::int32_t first;
  std::int32_t last;
  Source source;
  std::int32_t type;
};

constexpr std::array rows{
    Row{155, 155, Source::program_number, host::type_long},
    Row{328, 328, Source::document_name, host::type_string},
    Row{380, 380, Source::nothing_behind, host::type_long},
    Row{381, 382, Source::nothing_behind, host::type_double},
    Row{385, 385, Source::nothing_behind, host::type_double},
    Row{462, 462, Source::program_name, host::type_string},
    Row{726, 726, Source::nothing_behind, host::type_double},
    Row{1453, 1453, Source::nothing_behind, host::type_double},
    Row{1561, 1580, Source::custom_setting, host::type_double},
    Row{1591, 1600, Source::custom_setting_text, host::type_string},
    Row{2505, 2505, Source::origin_x, host::type_double},
    Row{2506, 2506, Source::origin_y, host::type_double},
    Row{2507, 2507, Source::origin_z, host::type_double},
};
constexpr Row any_other{0, 0, Source::document_name, host::type_string};

constexpr const Row& row_of(std::int32_t number) noexcept {
  for (const Row& row : rows) {
    if (number >= row.first && number <= row.last) return row;
  }
  return any_other;
}

/// A document's setup by its kind. Only a setup with turrets has programs.
struct Setups {
  host::Setup setup;
  host::MachineSetup with_programs;  // a view of nothing on a mill
};

Setups setups_of(const host::Document& document) {
  switch (document.SetupKind()) {
    case mill_setup:
      return {host::Setup(document.MillSetup().ref()), {}};
    case turret_setup: {
      const host::MachineSetup machine = document.MachineSetup();
      return {host::Setup(machine.ref()), machine};
    }
    default:
      return {};
  }
}

Value value_of(const host::Document& document, const Setups& setups, const Row& row, std::int32_t number,
               const Value& index) {
  const host::Setup& setup = setups.setup;
  const bool has_programs = !setups.with_programs.is_nothing();
  switch (row.source) {
    case Source::document_name:
      return document.Name();
    case Source::program_number:
      return has_programs ? setups.with_programs.Programs().Item(index).Number() : setup.ProgramNumber();
    case Source::program_name:
      return has_programs ? setups.with_programs.Programs().Item(index).Name() : setup.ProgramName();
    case Source::custom_setting:
      return setup.CustomSetting(number - row.first + 1);
    case Source::custom_setting_text:
      return setup.CustomSettingStr(number - row.first + 1);
    case Source::origin_x:
      return setup.CustomMachineDefinition().MachineOriginX();
    case Source::origin_y:
      return setup.CustomMachineDefinition().MachineOriginY();
    case Source::origin_z:
      return setup.CustomMachineDefinition().MachineOriginZ();
    case Source::nothing_behind:
      return 0;
  }
  return {};
}

Value in_type(const Value& value, std::int32_t type) {
  switch (type) {
    case host::type_long:
      return value.to_int32();
    case host::type_double:
      return value.to_double();
    default:
      return value.to_text();
  }
}

}  // namespace

std::int32_t MachineParameterType(std::int32_t number) noexcept {
  return row_of(number).type;
}

Value GetMachineSetupParameter(const host::Document& document, std::int32_t number, const Value& index) {
  try {
    const Setups setups = setups_of(document);
    if (setups.setup.is_nothing()) return {};
    return in_type(value_of(document, setups, row_of(number), number, index), MachineParameterType(number));
  } catch (const automation::Failure&) {
    show_message("Error in GetMachineSetupParameter", platform::Icon::exclamation);
    return {};
  }
}

}  // namespace global
