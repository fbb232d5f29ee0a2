// Stands in for the exporter of the Quorvex side on Windows, as programs/QV-ToolExport.exe does elsewhere:
// puts the shop's exchange files, which lie in the folder above this program's, into the folder that
// QVEspritExportPath names.
#include <array>
#include <cstdlib>
#include <filesystem>
#include <iostream>

namespace fs = std::filesystem;

int main(int, char** argv) {
  constexpr std::array<std::array<const char*, 2>, 2> files{
      {{"shop-tools.csv", "QV-Esprit-Export.csv"}, {"shop-speeds.csv", "QV-Esprit-KB-Integration.csv"}}};
  const char* const folder = std::getenv("QVEspritExportPath");
  if (folder == nullptr || *folder == '\0') {
    std::cerr << "QV-ToolExport: QVEspritExportPath: the folder of the exchange files is not set\n";
    return 1;
  }
  for (const auto& [from, to] : files) {
    std::error_code failed;
    const fs::path shop = fs::absolute(argv[0]).parent_path().parent_path();
    fs::remove(fs::path(folder) / to, failed);
    fs::copy_file(shop / from, fs::path(folder) / to, failed);
    if (failed) {
      std::cerr << "QV-ToolExport: " << from << ": " << failed.message() << '\n';
      return 1;
    }
  }
}
