#include "shapes/station_of_tool.h"

#include <optional>

#include "foundation/failures.h"
#include "foundation/global.h"

namespace shapes {
namespace {

/// The entry whose number `read` gives, or the first one. The test that fails counts as passed, so a number
/// that couldn't be read there is asked for again.
template <class Entry, class Read>
Entry entry_or_first(const host::Collection<Entry>& entries, Read&& read) {
  std::optional<std::int32_t> number;
  const bool inside = passes([&] {
    number = read();
    return *number >= 1 && *number <= entries.Count();
  });
  Entry entry;
  skip_failure([&] { entry = entries.Item(!inside ? 1 : number ? *number : read()); });
  return entry;
}

}  // namespace

host::Station station_on_turret(const host::Tool& tool, MachineView& machine) {
  host::Turrets turrets;
  skip_failure([&] { turrets = machine.turrets(); });
  const host::Turret turret = entry_or_first(turrets, [&] { return tool.Turret(); });
  host::Stations stations;
  skip_failure([&] { stations = turret.Stations(); });
  return entry_or_first(stations, [&] { return tool.Station(); });
}

host::Station station_on_mill(const host::Tool& tool) {
  host::Stations stations;
  skip_failure([&] { stations = global::Application().Document().MillSetup().Stations(); });
  return entry_or_first(stations, [&] { return tool.Station(); });
}

}  // namespace shapes
