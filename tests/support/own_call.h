#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace testing_support {

/// How a program was called: its own file, and its arguments as the system's programs take them.
struct OwnCall {
  std::filesystem::path program;
  std::vector<std::string> arguments;
};

OwnCall own_call(int argc, char** argv);

}  // namespace testing_support
