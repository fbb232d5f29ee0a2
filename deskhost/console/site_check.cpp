#include "deskhost/console/site_check.h"

#include <array>

#include "deskhost/system/file_path.h"
#include "deskhost/system/program.h"
#include "platform/environment.h"
#include "platform/files.h"

namespace deskhost {
namespace {

struct PathVariable {
  const char* name;
  bool ends_in_separator;
  bool is_in_command_line;  ///< stands in one without quotes, where a blank ends a word
};
constexpr const char* exchange_folder = "QVEspritExportPath";
constexpr std::array<PathVariable, 4> variables{{{"QVEspritInstallPath", true, true},
                                                 {exchange_folder, false, false},
                                                 {"QVEspritUserModelsPath", false, false},
                                                 {"QVMakeListPath", false, true}}};

}  // namespace

SiteCheck::SiteCheck() {
  for (const PathVariable& row : variables) {
    const std::string value = platform::environment(row.name);
    if (value.empty()) continue;  // the add-in tells that itself
    const std::string what = std::string(row.name) + "=" + value + ": ";
    if (row.is_in_command_line && value.find(' ') != value.npos)
      warnings_.push_back(what + "has a blank, at which a command line parts; use a folder without");
    const bool ends_in_separator = value.ends_with('\\') || value.ends_with('/');
    if (row.ends_in_separator && !ends_in_separator)
      warnings_.push_back(what +
                          "doesn't end in a separator, and the program's name is put directly behind it");
    if (!row.ends_in_separator && ends_in_separator)
      warnings_.push_back(what + "ends in a separator, and one more is put behind it");
  }
  const std::string folder = platform::environment(exchange_folder);
  if (folder.empty()) return;
  held_ = hold_folder(path_of(platform::native_path(folder)));
  if (!held_)
    warnings_.push_back(std::string(exchange_folder) + "=" + folder +
                        ": another session is using this folder; give each seat one of its own");
}

}  // namespace deskhost
