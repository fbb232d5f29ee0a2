// Stands in for the list maker of the Quorvex side on Windows, as programs/QVMakeList.exe does elsewhere:
// reads the tool list file that it is given, as the real one would, and keeps what it took in beside it as
// FILE.accepted. A list that it can't take ends it with status 1 and a line on standard error, and leaves no
// such file.
#include <array>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <regex>
#include <string>

namespace fs = std::filesystem;

namespace {

/// Line by line, each with its prefix; the material line stands without quotes where no material is chosen.
constexpr std::array<const char*, 14> head_lines{
    R"(\*------- Quorvex MakeList File -------)",
    R"(FileVersion:"2\.0")",
    R"(\*------- Quorvex tool list -------)",
    R"(ToolListsIdent:".*")",
    R"(ToolListVersion:)",
    R"(ToolListsDescript:".*")",
    R"(ZEPHAMaterialCode:(".*")?)",
    R"(MachineName:".*")",
    R"(MachineNr:".*")",
    R"(ToolListsWho:".*")",
    R"(ToolListsNCP:".*")",
    R"(\*------- Quorvex tool assemblies -------)",
    R"(\* Ident; Ver; T; D; H; R; Operating Time; StationID; Orientation)",
    R"(Tools:)",
};
constexpr const char* row = R"([^;]+;;[^;]*;[^;]*;;[^;]*;[0-9]+(\.[0-9]+)?;[^;]*;[^;]*)";

/// What is wrong with the list, or nothing.
std::string refusal(const std::string& text) {
  std::size_t number = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    std::string line = text.substr(at, end - at);
    at = end + 1;
    const std::string where = "line " + std::to_string(++number);
    if (!line.ends_with('\r')) return where + " doesn't end in CR LF";
    line.pop_back();
    const std::regex wanted(number <= head_lines.size() ? head_lines[number - 1] : row);
    if (!std::regex_match(line, wanted)) return where + ": " + line;
  }
  return number < head_lines.size() ? "ends after line " + std::to_string(number) : "";
}

}  // namespace

int main(int argc, char** argv) {
  const std::string file = argc > 1 ? argv[1] : "";
  std::error_code ignored;
  fs::remove(file + ".accepted", ignored);
  std::ifstream in(file, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(in), {}};
  const std::string why = in ? refusal(text) : "not there";
  if (!why.empty()) {
    std::cerr << "QVMakeList: " << file << ": " << why << '\n';
    return 1;
  }
  std::ofstream(file + ".accepted", std::ios::binary) << text;
}
