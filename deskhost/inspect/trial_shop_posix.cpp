#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string_view>

#include "automation/failure.h"
#include "deskhost/inspect/trial_shop.h"
#include "deskhost/system/program.h"

namespace deskhost::inspect {
namespace {

namespace fs = std::filesystem;

constexpr const char* given_file = "given.csv";
constexpr const char* tool_file = "exchange/QV-Esprit-Export.csv";
constexpr const char* exchange_file = "exchange/QV-Esprit-KB-Integration.csv";
constexpr const char* list_file = "exchange/QVEspritList.tls";
constexpr const char* said_file = "said";
constexpr const char* settings_file = "addin/QVEsprit.cfg";

struct Variable {
  const char* name;
  const char* place;  // below the shop's folder
};
constexpr Variable variables[] = {
    {"QVEspritInstallPath", "programs/"},
    {"QVEspritExportPath", "exchange"},
    {"QVMakeListPath", "exchange"},
    {"QVESPRIT_REGISTRY", "registry.reg"},
};

void write(const fs::path& file, std::string_view bytes) {
  std::ofstream out(file, std::ios::binary);
  if (!(out << bytes).flush()) throw automation::Failure("\"" + file.string() + "\" can't be written");
}

void write_program(const fs::path& file, const std::string& script) {
  write(file, "#!/bin/sh\n" + script + "\n");
  fs::permissions(file, fs::perms::owner_all);
}

}  // namespace

/// Another file in the place of a standard one, for one scope.
class TrialShop::OtherFile {
 public:
  OtherFile(int number, const char* file, int flags)
      : number_(number), before_(fcntl(number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)) {
    flush();
    const int other = open(file, flags | O_CLOEXEC, 0600);
    dup2(other, number_);
    close(other);
  }
  ~OtherFile() {
    flush();
    dup2(before_, number_);
    close(before_);
  }
  OtherFile(const OtherFile&) = delete;
  OtherFile& operator=(const OtherFile&) = delete;

 private:
  static void flush() {
    std::cerr << std::flush;
    std::fflush(stderr);
  }

  int number_;
  int before_;
};

// The component is linked to and not copied: it takes its settings from where it was loaded.
TrialShop::TrialShop(const std::string& component, const std::string& settings, const std::string& models)
    : folder_([] { return make_folder_in_memory("deskhost-inspect"); }),
      component_name_(fs::path(component).filename().string()) {
  for (const char* const below : {"addin", "programs", "exchange", "models"}) {
    fs::create_directory(file(below));
  }
  const fs::path given = fs::absolute(component);
  fs::create_symlink(given, this->component());
  for (const auto& entry : fs::directory_iterator(given.parent_path())) {
    const fs::path ending = entry.path().extension();
    if (ending == ".txt" || ending == ".cfg") fs::copy(entry.path(), file("addin"));
  }
  if (!settings.empty()) {
    fs::copy_file(settings, file(settings_file), fs::copy_options::overwrite_existing);
  }
  write_program(file("programs/QV-ToolExport.exe"), std::string("here=${0%/*}/..\nexec cp \"$here/") +
                                                        given_file + "\" \"$here/" + tool_file + "\"");
  write_program(file("programs/QVMakeList.exe"), "exit 0");
  for (const Variable& row : variables) variables_.emplace_back(row.name, file(row.place));
  variables_.emplace_back("QVEspritUserModelsPath",
                          models.empty() ? file("models") : fs::absolute(models).lexically_normal().string());
  files_.emplace_back(STDIN_FILENO, "/dev/null", O_RDONLY);
  files_.emplace_back(STDERR_FILENO, file(said_file).c_str(), O_WRONLY | O_CREAT | O_APPEND);
}

TrialShop::~TrialShop() = default;

void TrialShop::write_exchange_files(const std::string& tools, const std::string& exchange) const {
  write(file(given_file), tools);
  write(file(exchange_file), exchange);
}

std::string TrialShop::component() const {
  return file("addin/" + component_name_);
}

bool TrialShop::was_exported() const {
  return fs::exists(file(tool_file));
}

std::string TrialShop::tool_list() const {
  std::ifstream in(file(list_file), std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<std::string> TrialShop::messages() const {
  constexpr std::string_view mark = "message box: ";
  std::vector<std::string> messages;
  const std::string own = file("exchange");
  std::ifstream in(file(said_file), std::ios::binary);
  for (std::string line; std::getline(in, line);) {
    if (!line.starts_with(mark)) continue;
    const auto box = nlohmann::json::parse(line.substr(mark.size()), nullptr, false);
    std::string text = box.is_object() ? box.value("text", "") : line;
    // A user's folder has another name.
    for (std::size_t at; (at = text.find(own)) != std::string::npos;) text.replace(at, own.size(), "…");
    messages.push_back(std::move(text));
  }
  return messages;
}

}  // namespace deskhost::inspect
