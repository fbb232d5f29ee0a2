#include <cstdlib>
#include <fstream>
#include <iterator>

#include "deskhost/check/shop_system.h"

namespace deskhost::check {
namespace {

namespace fs = std::filesystem;

/// The words of a script.
constexpr const char* words =
    "#!/bin/sh\n"
    "copy() { cp \"$1\" \"$2\"; }\n"
    "half() { head -c -40 \"$1\" > \"$2\"; }\n"
    "make() { : > \"$1\"; }\n"
    "folder() { mkdir \"$1\"; }\n"
    "fail() { exit 3; }\n"
    "die() { kill -9 $$; }\n";

}  // namespace

void make_program(const fs::path& file, const std::string& script) {
  fs::remove_all(file);
  std::ofstream(file, std::ios::binary) << words << script << '\n';
  fs::permissions(file, fs::perms::owner_all);
}

std::optional<int> run_as_shop_program() {
  return std::nullopt;
}

void have_own_registry(const fs::path& file) {
  setenv("QVESPRIT_REGISTRY", file.c_str(), 1);
}

void refill_own_registry(const fs::path& /*file*/) {}  // the add-in reads it

std::shared_ptr<void> refuse_writes(const fs::path& file) {
  fs::create_symlink("/dev/full", file);
  return nullptr;
}

std::size_t open_files(const fs::path& /*folder*/) {
  return static_cast<std::size_t>(std::distance(fs::directory_iterator("/proc/self/fd"), {}));
}

}  // namespace deskhost::check
