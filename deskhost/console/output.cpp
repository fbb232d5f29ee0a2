#include "deskhost/console/output.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "deskhost/session/session.h"
#include "deskhost/system/file_path.h"
#include "deskhost/system/pipe_end.h"

namespace deskhost {
namespace {

namespace fs = std::filesystem;

/// With the file that a link leads to, be it there already or not.
fs::path full_name(fs::path path) {
  constexpr int most_links = 40;
  std::error_code ignored;
  for (int i = 0; i < most_links && fs::is_symlink(path, ignored); ++i)
    path = path.parent_path() / fs::read_symlink(path, ignored);
  return fs::weakly_canonical(fs::absolute(path, ignored), ignored);
}

bool is_same_file(const std::string& name_a, const std::string& name_b) {
  const fs::path a = path_of(name_a);
  const fs::path b = path_of(name_b);
  std::error_code ignored;
  if (fs::exists(a, ignored) && !fs::is_regular_file(a, ignored)) return false;
  if (fs::equivalent(a, b, ignored)) return true;
  const fs::path full = full_name(a);
  return !full.empty() && full == full_name(b);
}

std::string last_system_error() {
  return errno == 0 ? "" : ": " + std::generic_category().message(errno);
}

/// What to do about a file that can't be opened.
const char* hint_for(const fs::path& path) {
  std::error_code ignored;
  if (fs::is_directory(path, ignored)) return "it is a folder; give a file in it";
  if (path.has_parent_path() && !fs::is_directory(path.parent_path(), ignored))
    return "give a file in a folder that exists";
  return "check its rights and those of its folder, or give another file";
}

}  // namespace

void refuse_lost_file(const NamedFile& output, const std::vector<NamedFile>& others) {
  const auto is_file = [](const NamedFile& each) { return !each.file.empty() && each.file != standard_file; };
  if (!is_file(output)) return;
  for (const NamedFile& other : others) {
    if (!is_file(other) || !is_same_file(output.file, other.file)) continue;
    throw WrongUse(
        output.named_by + ": \"" + output.file + "\" would be lost: " + other.named_by + " names it too",
        "give another file");
  }
}

Output::Output(std::string file, std::ostream& standard_output)
    : file_(std::move(file)), stream_(&standard_output) {
  if (file_ == standard_file) return;
  const PipeEnd held(path_of(file_));
  if (held.has_no_reader())
    throw WrongUse("\"" + file_ + "\" is a pipe that nobody reads from", "start its reader first");
  errno = 0;
  auto own = std::make_unique<std::ofstream>(path_of(file_), std::ios::binary);
  if (!*own) {
    const std::string why = last_system_error();
    throw WrongUse("\"" + file_ + "\" can't be written" + why, hint_for(path_of(file_)));
  }
  own_ = std::move(own);
  stream_ = own_.get();
}

Output::~Output() {
  if (own_) remove();
}

// What a link leads to, such as standard output by a name of the system's, is emptied only.
void Output::remove() noexcept {
  own_.reset();
  std::error_code ignored;
  const fs::path path = path_of(file_);
  if (!fs::is_regular_file(path, ignored)) return;
  if (fs::is_symlink(path, ignored)) {
    fs::resize_file(path, 0, ignored);
  } else {
    fs::remove(path, ignored);
  }
}

void Output::finish() {
  if (!own_) return;
  errno = 0;
  const bool is_whole = static_cast<bool>(own_->flush());
  const std::string why = last_system_error();
  if (is_whole) return own_.reset();
  throw WrongUse("\"" + file_ + "\" couldn't be written to its end" + why, "check the space where it stands");
}

void write_output(const std::string& file, std::ostream& standard_output,
                  const std::function<void(std::ostream&)>& write) {
  Output output(file, standard_output);
  write(output.stream());
  output.finish();
}

}  // namespace deskhost
