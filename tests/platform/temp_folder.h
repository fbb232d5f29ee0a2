#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "support/system.h"

namespace testing_support {

inline std::filesystem::path path_of(const std::string& utf8) {
  return {std::u8string(utf8.begin(), utf8.end())};
}

/// A folder of its own for one test; gone afterwards. Names are UTF-8.
class TempFolder {
 public:
  TempFolder() {
    static std::atomic<int> number{0};
    path_ = std::filesystem::temp_directory_path() /
            ("qvesprit-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "-" +
             std::to_string(reinterpret_cast<std::uintptr_t>(this)) + "-" + std::to_string(number++));
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  [[nodiscard]] std::string file(const std::string& name) const {
    const std::u8string file = (path_ / path_of(name)).u8string();
    return {file.begin(), file.end()};
  }

  std::string write(const std::string& name, const std::string& bytes) const {
    const std::filesystem::path path = path_ / path_of(name);
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
    return file(name);
  }
  [[nodiscard]] std::string read(const std::string& name) const {
    std::ifstream in(path_ / path_of(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

 private:
  std::filesystem::path path_;
};

/// Sets an environment variable for one scope.
class WithVariable {
 public:
  WithVariable(std::string name, const std::string& value) : name_(std::move(name)), old_(variable(name_)) {
    set_variable(name_, value);
  }
  ~WithVariable() { set_variable(name_, old_); }
  WithVariable(const WithVariable&) = delete;
  WithVariable& operator=(const WithVariable&) = delete;

 private:
  std::string name_;
  std::optional<std::string> old_;
};

}  // namespace testing_support
