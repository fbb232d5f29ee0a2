#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "platform/temp_folder.h"

namespace testing_support {
namespace {

class Set : public Otherwise {
 public:
  Set(const std::string& name, const std::string& value) : variable_(name, value) {}

 private:
  WithVariable variable_;
};

}  // namespace

const bool on_windows = false;
const bool on_wine = false;
const char* const program_ending = "";

std::optional<std::string> variable(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

void set_variable(const std::string& name, const std::optional<std::string>& value) {
  if (value) {
    setenv(name.c_str(), value->c_str(), 1);
  } else {
    unsetenv(name.c_str());
  }
}

Drive::Drive(std::string folder) : folder_(std::move(folder)) {
  set_variable("QVESPRIT_DRIVE_Q", folder_);
}

Drive::~Drive() {
  set_variable("QVESPRIT_DRIVE_Q", std::nullopt);
}

std::string Drive::at(std::string text) const {
  return text;
}

std::unique_ptr<Otherwise> with_decimal_sign(char sign) {
  return std::make_unique<Set>("QVESPRIT_DECIMAL", std::string(1, sign));
}

std::unique_ptr<Otherwise> with_own_registry(const std::string& folder) {
  return std::make_unique<Set>("QVESPRIT_REGISTRY", folder + "/settings/user.reg");
}

void make_program(const std::string& file, const std::string& instructions) {
  namespace fs = std::filesystem;
  fs::remove(file);
  fs::create_directories(fs::path(file).parent_path());
  fs::create_symlink(STAND_IN, file);
  std::ofstream(file + ".todo") << instructions;
}

}  // namespace testing_support
