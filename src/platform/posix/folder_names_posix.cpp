#include "platform/posix/folder_names_posix.h"

#include <dirent.h>
#include <sys/stat.h>

#include <ctime>
#include <map>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "platform/posix/text_posix.h"

namespace platform::posix {
namespace {

// Clocks of file systems go in steps of up to two seconds.
constexpr std::time_t clock_step = 3;
// A path has a few folders, and a run a few paths.
constexpr std::size_t most_folders = 16;

/// Which folder it is, and in which state.
struct State {
  dev_t device = 0;
  ino_t inode = 0;
  std::time_t seconds = 0;
  long nanoseconds = 0;

  bool operator==(const State&) const = default;
};

State state_of(const std::string& native) {
  struct stat status {};
  if (stat(native.c_str(), &status) != 0) return {};
  return {status.st_dev, status.st_ino, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

struct Listing {
  State state;
  std::unordered_map<std::string, std::string> names;  // as they stand there, by their folded form
};

Listing list(const std::string& native) {
  Listing listing{state_of(native), {}};
  const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(native.c_str()), closedir);
  while (const dirent* entry = entries ? readdir(entries.get()) : nullptr) {
    const auto [place, is_new] = listing.names.try_emplace(folded_name(entry->d_name), entry->d_name);
    if (!is_new && place->second > entry->d_name) place->second = entry->d_name;
  }
  return listing;
}

/// What is known of folders, by their paths.
class Listings {
 public:
  const Listing& of(const std::string& native) {
    if (listings_.size() >= most_folders && !listings_.contains(native)) listings_.clear();
    Listing& known = listings_[native];
    const bool holds =
        known.state == state_of(native) && known.state.seconds + clock_step <= std::time(nullptr);
    if (!holds) known = list(native);
    return known;
  }

 private:
  std::map<std::string, Listing> listings_;
};

}  // namespace

std::string name_in_other_case(const std::string& folder, const std::string& name) {
  static std::mutex mutex;
  static Listings listings;
  const std::lock_guard lock(mutex);
  const auto& names = listings.of(folder.empty() ? "." : folder).names;
  const auto found = names.find(folded_name(name));
  return found == names.end() ? "" : found->second;
}

}  // namespace platform::posix
