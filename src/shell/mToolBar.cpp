#include "shell/mToolBar.h"

#include <array>
#include <cstdint>

#include "automation/number.h"
#include "foundation/Registry.h"
#include "foundation/failures.h"

namespace mToolBar {
namespace {

constexpr std::int16_t current_user = 1;

enum class Step : std::uint8_t { none, position, top, left, top_plus_10, left_plus_10 };

// By docking position: what is written, in order, while the toolbar is hidden. A docked toolbar reports a
// coordinate that is 10 short in the direction in which it was docked.
constexpr std::array<std::array<Step, 3>, 5> steps_by_position{{
    {Step::top, Step::left, Step::none},
    {Step::position, Step::left, Step::top_plus_10},
    {Step::position, Step::top, Step::left_plus_10},
    {Step::position, Step::top, Step::left_plus_10},
    {Step::position, Step::top_plus_10, Step::left},
}};

std::string key(const std::string& add_in_name) {
  return "Software\\D.P.Technology\\Esprit\\" + add_in_name;
}

automation::Value stored(const std::string& add_in_name, const char* name) {
  return Registry::GetRegistryValue(current_user, key(add_in_name), name);
}

std::int32_t plus_10(const automation::Value& coordinate) {
  return automation::to_int32(coordinate.to_double() + 10);
}

void run(Step step, const host::ToolBar& tool_bar, const std::string& name) {
  switch (step) {
    case Step::none:
      break;
    case Step::position:
      tool_bar.Position(stored(name, "tbPosition").to_int32());
      break;
    case Step::top:
      tool_bar.Top(stored(name, "tbTop").to_int32());
      break;
    case Step::left:
      tool_bar.Left(stored(name, "tbLeft").to_int32());
      break;
    case Step::top_plus_10:
      tool_bar.Top(plus_10(stored(name, "tbTop")));
      break;
    case Step::left_plus_10:
      tool_bar.Left(plus_10(stored(name, "tbLeft")));
      break;
  }
}

void store(const std::string& add_in_name, const char* name, std::int32_t number) {
  Registry::SaveRegistryString(current_user, key(add_in_name), name, std::to_string(number));
}

}  // namespace

void restore(const host::ToolBar& tool_bar, const std::string& add_in_name) {
  std::int16_t position = 0;
  skip_failure([&] { position = stored(add_in_name, "tbPosition").to_int16(); });
  if (position < 0 || position >= static_cast<std::int16_t>(steps_by_position.size())) return;
  skip_failure([&] { tool_bar.Visible(false); });
  for (const Step step : steps_by_position[static_cast<std::size_t>(position)]) {
    skip_failure([&] { run(step, tool_bar, add_in_name); });
  }
  skip_failure([&] { tool_bar.Visible(true); });
}

void save(const host::ToolBar& tool_bar, const std::string& add_in_name) {
  skip_failure([&] { store(add_in_name, "tbLeft", tool_bar.Left()); });
  skip_failure([&] { store(add_in_name, "tbTop", tool_bar.Top()); });
  skip_failure([&] { store(add_in_name, "tbPosition", tool_bar.Position()); });
}

}  // namespace mToolBar
