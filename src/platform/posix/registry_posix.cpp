#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <array>

#include "automation/failure.h"
#include "platform/files.h"
#include "platform/posix/path_posix.h"
#include "platform/registry.h"
#include "platform/registry_text.h"
#include "platform/text.h"

namespace platform {
namespace {

using registry_text::Entry;
using registry_text::Key;
using registry_text::Store;

struct Hive {
  RegistryRoot root;
  const char* name;
};

constexpr std::array<Hive, 5> hives{{
    {0x80000000U, "HKEY_CLASSES_ROOT"},
    {0x80000001U, "HKEY_CURRENT_USER"},
    {0x80000002U, "HKEY_LOCAL_MACHINE"},
    {0x80000003U, "HKEY_USERS"},
    {0x80000005U, "HKEY_CURRENT_CONFIG"},
}};

// A name as it comes back from the file.
std::string stored(std::string_view name) {
  return from_code_page(to_code_page(name));
}

bool fits_line(std::string_view name) {
  return name.find_first_of(std::string_view("\0\r\n", 3)) == std::string_view::npos;
}

// The key's path with its hive; empty for a root that there isn't and a name that the file can't hold.
std::string full_path(RegistryRoot root, std::string_view key) {
  const auto* hive = std::ranges::find(hives, root, &Hive::root);
  if (hive == hives.end() || !fits_line(key)) return {};
  return key.empty() ? hive->name : std::string(hive->name) + "\\" + stored(key);
}

// A key is there when the file has it or one below it.
bool has_key(const Store& store, std::string_view path) {
  if (path.find('\\') == std::string_view::npos) return !path.empty();
  return std::ranges::any_of(store, [path](const Key& key) {
    const std::string_view start = std::string_view(key.path).substr(0, path.size());
    return same_name(start, path) && (key.path.size() == path.size() || key.path[path.size()] == '\\');
  });
}

Key& key_of(Store& store, const std::string& path) {
  const auto found = std::ranges::find_if(store, [&](const Key& key) { return same_name(key.path, path); });
  return found != store.end() ? *found : store.emplace_back(Key{path, {}});
}

// The registry as its file has it. Throws Failure where the file is there and can't be read as one: it may be
// somebody's, so nothing is written over it.
Store open_registry() {
  const std::string file = posix::registry_file();
  if (file.empty()) throw automation::Failure(automation::Error::path_not_found);
  if (!file_exists(file)) return {};
  auto store = registry_text::parse(read_file(file));
  if (!store) throw automation::Failure(automation::Error::permission_denied);
  return *std::move(store);
}

// Keeps other processes from changing the registry between this one's reading and writing. The lock lies on a
// file beside it, as a change puts another file in the registry's place. Where no lock can be had, such as in
// a folder that is read-only, nothing can be changed either.
class ChangeLock {
 public:
  ChangeLock() {
    const std::string registry = posix::registry_file();
    if (registry.empty()) return;
    posix::make_folders(posix::folder_of(registry));
    file_ = ::open((registry + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    // A holder that hangs mustn't hold this process up: after two seconds it goes on without the lock.
    for (int tries = 0; file_ >= 0 && tries < 1000 && flock(file_, LOCK_EX | LOCK_NB) != 0; ++tries) {
      usleep(2000);
    }
  }
  ~ChangeLock() {
    if (file_ >= 0) ::close(file_);
  }
  ChangeLock(const ChangeLock&) = delete;
  ChangeLock& operator=(const ChangeLock&) = delete;

 private:
  int file_ = -1;
};

// Lets `change` change the registry; false where it refuses or its change can't be kept. What stays the same
// isn't written again: a write flushes the disk.
template <class Change>
bool change_registry(Change change) {
  try {
    const ChangeLock lock;
    Store store = open_registry();
    const std::string before = registry_text::print(store);
    if (!change(store)) return false;
    if (const std::string text = registry_text::print(store); text != before)
      replace_file(posix::registry_file(), text);
    return true;
  } catch (const automation::Failure&) {
    return false;
  }
}

bool same_value(const Entry& entry, std::string_view name) {
  return same_name(entry.name, stored(name));
}

}  // namespace

std::optional<RegistryValue> registry_read(RegistryRoot root, std::string_view key, std::string_view name) {
  try {
    const Store store = open_registry();
    const std::string path = full_path(root, key);
    for (const Key& candidate : store) {
      if (path.empty() || !same_name(candidate.path, path)) continue;
      for (const Entry& entry : candidate.entries) {
        if (same_value(entry, name)) return entry.value;
      }
    }
  } catch (const automation::Failure&) {
    // a registry that can't be read has no values
  }
  return std::nullopt;
}

bool registry_create_sub_key(RegistryRoot root, std::string_view parent, std::string_view name) {
  return change_registry([&](Store& store) {
    const std::string above = full_path(root, parent);
    if (!has_key(store, above) || !fits_line(name)) return false;
    const std::string path = above + "\\" + stored(name);
    if (name.empty() || has_key(store, path)) return true;
    key_of(store, path);
    return true;
  });
}

bool registry_write(RegistryRoot root, std::string_view key, std::string_view name,
                    const RegistryValue& value) {
  return change_registry([&](Store& store) {
    const std::string path = full_path(root, key);
    if (!has_key(store, path) || !fits_line(name)) return false;
    std::vector<Entry>& entries = key_of(store, path).entries;
    const auto entry = std::ranges::find_if(entries, [&](const Entry& e) { return same_value(e, name); });
    if (entry != entries.end()) {
      entry->value = value;
    } else {
      entries.push_back({stored(name), value});
    }
    return true;
  });
}

}  // namespace platform
