#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace testing_support {

/// A folder of its own for one test; gone afterwards.
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

  [[nodiscard]] std::string file(const std::string& name) const { return (path_ / name).string(); }

  std::string write(const std::string& name, const std::string& bytes) const {
    std::filesystem::create_directories((path_ / name).parent_path());
    std::ofstream(path_ / name, std::ios::binary) << bytes;
    return file(name);
  }
  [[nodiscard]] std::string read(const std::string& name) const {
    std::ifstream in(path_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

 private:
  std::filesystem::path path_;
};

/// Sets an environment variable for one scope.
class WithVariable {
 public:
  WithVariable(std::string name, const std::string& value) : name_(std::move(name)) {
    const char* old = std::getenv(name_.c_str());
    was_set_ = old != nullptr;
    if (was_set_) old_ = old;
    set(value);
  }
  ~WithVariable() {
    if (was_set_) {
      set(old_);
    } else {
      clear();
    }
  }
  WithVariable(const WithVariable&) = delete;
  WithVariable& operator=(const WithVariable&) = delete;

 private:
#ifdef _WIN32
  void set(const std::string& value) {
    _putenv_s(name_.c_str(), value.c_str());
  }
  void clear() {
    _putenv_s(name_.c_str(), "");
  }
#else
  void set(const std::string& value) {
    setenv(name_.c_str(), value.c_str(), 1);
  }
  void clear() {
    unsetenv(name_.c_str());
  }
#endif

  std::string name_;
  std::string old_;
  bool was_set_ = false;
};

}  // namespace testing_support
