#include "deskhost/console/hand_out.h"

#include <filesystem>
#include <fstream>
#include <iostream>

#include "automation/failure.h"
#include "deskhost/console/output.h"
#include "deskhost/session/session.h"
#include "deskhost/system/file_path.h"
#include "deskhost/system/program.h"

namespace deskhost {
namespace {

namespace fs = std::filesystem;

/// In the exporter's environment: what is to be handed out.
constexpr const char* handed_out = "DESKHOST_HANDED_OUT";
constexpr const char* exporter = "QV-ToolExport.exe";
constexpr const char* install_path = "QVEspritInstallPath";
constexpr const char* export_path = "QVEspritExportPath";

void copy_from(std::istream& in, const std::string& name, const fs::path& to) {
  std::ofstream out(to, std::ios::binary);
  if (in.peek() != std::istream::traits_type::eof()) out << in.rdbuf();
  if (in.bad()) throw WrongUse("\"" + name + "\" can't be read", "check the file");
  if (!out.flush())
    throw WrongUse("\"" + name + "\" can't be copied", "check the space in " + name_of(to.parent_path()));
}

void copy(const std::string& name, const fs::path& to) {
  if (name == standard_file) return copy_from(std::cin, "standard input", to);
  std::error_code ignored;
  const fs::path from = path_of(name);
  if (!fs::exists(from, ignored))
    throw WrongUse("there is no file \"" + name + "\"",
                   "give an exchange file, or an action; see deskhost --help");
  if (!fs::is_regular_file(from, ignored))
    throw WrongUse("\"" + name + "\" is no file", "give an exchange file");
  std::ifstream in(from, std::ios::binary);
  if (!in) throw WrongUse("\"" + name + "\" can't be opened", "check its rights");
  copy_from(in, name, to);
}

fs::path new_folder() {
  try {
    return make_temporary_folder();
  } catch (const automation::Failure& failure) {
    throw WrongUse(failure.what(), "check the folder for temporary files; the copies go there");
  }
}

}  // namespace

HandedOut::HandedOut(const std::string& tools, const std::string& speeds) : folder_(new_folder) {
  const fs::path& folder = folder_.path();
  copy(tools, folder / "handed-out.csv");
  const fs::path speeds_copy = folder / "QV-Esprit-KB-Integration.csv";
  if (speeds.empty()) {
    std::ofstream(speeds_copy, std::ios::binary);
  } else {
    copy(speeds, speeds_copy);
  }
  be_found_at(folder / exporter);
  const std::string name = name_of(folder);
  variables_.emplace_back(export_path, name);
  variables_.emplace_back(install_path, name_of(folder / ""));
  variables_.emplace_back(handed_out, name_of(folder / "handed-out.csv"));
}

std::optional<int> hand_out(const std::string& own_name) {
  const std::optional<std::string> from = variable(handed_out);
  const std::optional<std::string> to = variable(export_path);
  if (!from || !to || !own_name.ends_with(exporter)) return std::nullopt;
  std::error_code error;
  fs::copy_file(path_of(*from), path_of(*to) / "QV-Esprit-Export.csv", error);
  return error ? 1 : 0;
}

}  // namespace deskhost
