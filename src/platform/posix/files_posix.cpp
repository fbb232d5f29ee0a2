#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <utility>

#include "automation/failure.h"
#include "platform/files.h"
#include "platform/host_watch.h"
#include "platform/posix/path_posix.h"

namespace platform {
namespace {

using automation::Error;
using automation::Failure;
using posix::failure_of;

// The failure, of which the program's watch hears where a user might look for the file in vain; a file that
// isn't there to be read is everyday.
Failure failure_told(int code, const std::string& native, bool is_everyday = false) {
  Failure failure = failure_of(code, native);
  const Watch* const told = is_everyday ? nullptr : watch();
  if (told != nullptr && told->file_failed) told->file_failed(native, failure.what());
  return failure;
}

// A pipe in a file's place fails at once instead of keeping the host waiting for its other end.
class Descriptor {
 public:
  Descriptor(const std::string& native, int flags)
      : number_(::open(native.c_str(), flags | O_CLOEXEC | O_NONBLOCK, 0666)) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  [[nodiscard]] int number() const { return number_; }
  int release() { return std::exchange(number_, -1); }

 private:
  int number_;
};

void write_all(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw failure_of(errno, {});
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

}  // namespace

bool file_exists(std::string_view path) {
  struct stat status {};
  return stat(native_path(path).c_str(), &status) == 0;
}

void delete_file(std::string_view path) {
  const std::string native = native_path(path);
  if (unlink(native.c_str()) != 0) throw failure_told(errno, native, errno == ENOENT);
}

std::string read_file(std::string_view path) {
  const std::string native = native_path(path);
  // a pipe that nobody writes into would hold the opening up
  const Descriptor file(native, O_RDONLY | O_NONBLOCK);
  struct stat status {};
  if (file.number() < 0 || fstat(file.number(), &status) != 0) {
    throw failure_told(errno, native, errno == ENOENT || errno == ENOTDIR);
  }
  // a device or a pipe may never end
  if (!S_ISREG(status.st_mode)) throw failure_told(EACCES, native);
  // the size is a guess: a file can grow meanwhile, and some have none to tell
  constexpr std::size_t step = 65536;
  std::string bytes(status.st_size > 0 ? static_cast<std::size_t>(status.st_size) + 1 : step, '\0');
  std::size_t filled = 0;
  for (;;) {
    if (filled == bytes.size()) bytes.resize(bytes.size() * 2);
    const ssize_t count = ::read(file.number(), bytes.data() + filled, bytes.size() - filled);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw failure_of(errno, native);
    if (count == 0) break;
    filled += static_cast<std::size_t>(count);
  }
  bytes.resize(filled);
  return bytes;
}

OutputFile::OutputFile(std::string_view path) {
  const std::string native = native_path(path);
  Descriptor file(native, O_WRONLY | O_CREAT | O_TRUNC);
  if (file.number() < 0) throw failure_told(errno, native);
  handle_ = file.release();
}

OutputFile::OutputFile(OutputFile&& other) noexcept : handle_(std::exchange(other.handle_, closed)) {}

OutputFile& OutputFile::operator=(OutputFile&& other) noexcept {
  if (this != &other) {
    if (is_open()) ::close(static_cast<int>(handle_));
    handle_ = std::exchange(other.handle_, closed);
  }
  return *this;
}

OutputFile::~OutputFile() {
  if (is_open()) ::close(static_cast<int>(handle_));
}

void OutputFile::write(std::string_view bytes) {
  if (!is_open()) throw Failure(Error::bad_file_name);
  write_all(static_cast<int>(handle_), bytes);
}

void OutputFile::close() {
  if (!is_open()) return;
  // after EINTR the descriptor is gone all the same
  if (::close(static_cast<int>(std::exchange(handle_, closed))) != 0 && errno != EINTR) {
    throw failure_of(errno, {});
  }
}

namespace {

// A link's target, so that the link stays one.
std::string final_target(const std::string& native) {
  const std::unique_ptr<char, void (*)(void*)> target(realpath(native.c_str(), nullptr), std::free);
  return target ? target.get() : native;
}

// A rename asks nothing of the file that it replaces, so what is read-only has to be asked for.
bool is_replaceable(const std::string& target, const struct stat& old) {
  return S_ISREG(old.st_mode) && (old.st_mode & 0222) != 0 && access(target.c_str(), W_OK) == 0;
}

// The file that will take the target's place; it is gone at the end unless it did.
class Replacement {
 public:
  explicit Replacement(const std::string& target)
      : path_(target + ".new" + std::to_string(getpid())), file_(path_, O_WRONLY | O_CREAT | O_TRUNC) {
    if (file_.number() < 0) throw failure_of(errno, path_);
  }
  ~Replacement() {
    if (!path_.empty()) unlink(path_.c_str());
  }
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  void take_permissions(const struct stat& old) {
    // another user's file stays theirs where the system lets us; the mode comes last, as a change of owner
    // takes bits of it away
    [[maybe_unused]] const int owner = fchown(file_.number(), old.st_uid, old.st_gid);
    if (fchmod(file_.number(), old.st_mode & 07777) != 0) throw failure_of(errno, path_);
  }
  void put(std::string_view bytes, const std::string& target) {
    write_all(file_.number(), bytes);
    if (fsync(file_.number()) != 0) throw failure_of(errno, path_);
    if (rename(path_.c_str(), target.c_str()) != 0) throw failure_of(errno, path_);
    path_.clear();
  }

 private:
  std::string path_;
  Descriptor file_;
};

}  // namespace

void replace_file(std::string_view path, std::string_view bytes) {
  const std::string target = final_target(native_path(path));
  struct stat old {};
  const bool there = stat(target.c_str(), &old) == 0;
  if (there && !is_replaceable(target, old)) throw Failure(Error::permission_denied);
  Replacement replacement(target);
  if (there) replacement.take_permissions(old);
  replacement.put(bytes, target);
  const Descriptor folder(posix::folder_of(target), O_RDONLY | O_DIRECTORY);
  if (folder.number() >= 0) fsync(folder.number());
}

}  // namespace platform
