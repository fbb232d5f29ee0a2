#include "platform/posix/path_posix.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>

#include "platform/file_pattern.h"
#include "platform/files.h"
#include "platform/posix/folder_names_posix.h"

namespace platform {
namespace {

using automation::Error;
using automation::Failure;

bool exists(const std::string& native) {
  struct stat status {};
  return lstat(native.c_str(), &status) == 0;
}

bool is_folder(const std::string& native) {
  struct stat status {};
  return stat(native.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

bool has_drive(std::string_view path) {
  return path.size() >= 2 && path[1] == ':' &&
         ((path[0] >= 'A' && path[0] <= 'Z') || (path[0] >= 'a' && path[0] <= 'z'));
}

std::string drive_variable(char drive) {
  constexpr int upper_case = 0xdf;
  return std::string("QVESPRIT_DRIVE_") + static_cast<char>(drive & upper_case);
}

// The folder that stands for a drive; empty where none does.
std::string known_drive_folder(char drive) {
  std::string folder = variable(drive_variable(drive).c_str());
  while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  return folder;
}

// A drive that no folder stands for has no files: it leads below what is no folder.
std::string drive_folder(char drive) {
  const std::string folder = known_drive_folder(drive);
  return folder.empty() ? "/dev/null/" + drive_variable(drive) : folder;
}

// The path with "/" and without drive letter; blanks at its end don't count.
std::string mapped(std::string_view path) {
  path = path.substr(0, path.find_last_not_of(' ') + 1);
  std::string folder;
  if (has_drive(path)) {
    folder = drive_folder(path[0]);
    path.remove_prefix(2);
  }
  std::string native(path);
  std::ranges::replace(native, '\\', '/');
  if (folder.empty()) return native;
  return native.empty() || native.front() == '/' ? folder + native : folder + "/" + native;
}

// The name in `folder` (with its "/"; empty: the current one) that equals `name` or else differs from it only
// in case; empty where there is none.
std::string name_on_disk(const std::string& folder, const std::string& name) {
  return exists(folder + name) ? name : posix::name_in_other_case(folder, name);
}

struct Walk {
  std::string path;
  bool complete = true;
};

// The path with each level's name as it stands on disk; from a missing level on as it was given.
Walk names_on_disk(std::string_view native) {
  Walk walk;
  std::size_t from = 0;
  while (from < native.size()) {
    const std::size_t slash = std::min(native.find('/', from), native.size());
    std::string name(native.substr(from, slash - from));
    if (!name.empty() && walk.complete) {
      const std::string found = name_on_disk(walk.path, name);
      walk.complete = !found.empty();
      if (walk.complete) name = found;
    }
    walk.path += name;
    if (slash < native.size()) walk.path += '/';
    from = slash + 1;
  }
  return walk;
}

}  // namespace

std::string native_path(std::string_view path) {
  std::string native = mapped(path);
  return exists(native) ? native : names_on_disk(native).path;
}

std::string long_path(std::string_view path) {
  if (path.ends_with(":\\")) return std::string(path);
  const std::string_view drive = has_drive(path) ? path.substr(0, 2) : "";
  const std::size_t drive_length = drive.empty() ? 0 : drive_folder(path[0]).size();
  Walk walk = names_on_disk(mapped(path));
  if (!walk.complete || walk.path.empty()) return {};
  while (walk.path.size() > 1 && walk.path.back() == '/') walk.path.pop_back();
  return std::string(drive) + posix::addin_form(walk.path.substr(std::min(drive_length, walk.path.size())));
}

std::string current_directory(char drive) {
  if (drive != 0) return posix::addin_form(known_drive_folder(drive));
  const std::unique_ptr<char, void (*)(void*)> folder(getcwd(nullptr, 0), std::free);
  const std::string name = folder ? folder.get() : "";
  return name == "/" ? std::string() : posix::addin_form(name);
}

bool file_matches(std::string_view pattern) {
  const std::string native = native_path(pattern);
  const std::size_t name_start = native.find_last_of('/') + 1;
  const std::string wanted = native.substr(name_start);
  const std::string folder = native.substr(0, name_start);
  const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(folder.empty() ? "." : folder.c_str()), closedir);
  if (!entries && errno != ENOENT && errno != ENOTDIR) throw posix::failure_of(errno, native);
  while (const dirent* entry = entries ? readdir(entries.get()) : nullptr) {
    if (matches_pattern(entry->d_name, wanted) && !is_folder(folder + entry->d_name)) return true;
  }
  return false;
}

namespace posix {

std::string addin_form(std::string_view native) {
  std::string path(native);
  std::ranges::replace(path, '/', '\\');
  return path;
}

std::string folder_of(const std::string& native) {
  const std::size_t slash = native.find_last_of('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : native.substr(0, slash);
}

bool make_folders(const std::string& native) {
  if (is_folder(native)) return true;
  const std::string above = folder_of(native);
  if (above == native || !make_folders(above)) return false;
  return mkdir(native.c_str(), 0777) == 0 || is_folder(native);
}

Failure failure_of(int code, const std::string& native) {
  switch (code) {
    case ENOENT:
      return Failure(is_folder(folder_of(native)) ? Error::file_not_found : Error::path_not_found);
    case ENOTDIR:
    case ELOOP:
      return Failure(Error::path_not_found);
    case EACCES:
    case EPERM:
    case EISDIR:
    case EROFS:
    case EBUSY:
    case ETXTBSY:
      return Failure(Error::permission_denied);
    case ENAMETOOLONG:
      return Failure(Error::bad_file_name);
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return Failure(Error::disk_full);
    default:
      return Failure(Error::device_error);
  }
}

std::string settings_folder() {
  if (const std::string own = registry_file(); !own.empty()) return folder_of(own);
  return {};
}

std::string registry_file() {
  if (const std::string own = variable("QVESPRIT_REGISTRY"); !own.empty()) return native_path(own);
  if (const std::string user = variable("XDG_CONFIG_HOME"); !user.empty()) {
    return user + "/QVEsprit/registry.reg";
  }
  const std::string home = variable("HOME");
  return home.empty() ? std::string() : home + "/.config/QVEsprit/registry.reg";
}

}  // namespace posix
}  // namespace platform
