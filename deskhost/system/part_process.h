#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace deskhost {

/// Tells the process that started this one.
using Say = std::function<void(std::string_view text)>;

/// A process that does a part of this program's work. It is ended, with all that it started, by an
/// interruption.
class PartProcess {
 public:
  /// `part` is what it does, with nothing on standard input and `errors` as standard error. Where a running
  /// program can't be doubled, the program is started once more with `arguments`: they have to lead it to the
  /// same part, and what that says to standard output. Throws automation::Failure.
  PartProcess(const std::function<void(const Say&)>& part, const std::vector<std::string>& arguments,
              const std::filesystem::path& errors);
  /// Ends it where it still runs.
  ~PartProcess();
  PartProcess(const PartProcess&) = delete;
  PartProcess& operator=(const PartProcess&) = delete;

  /// What it has said since the last time; nothing once it is over.
  std::optional<std::string> hear();
  /// Ends it with all that it started.
  void kill();
  /// Waits for its end, and tells how it came to that: "crashes: Segmentation fault", "ends the host's
  /// process with status 3".
  std::string end();

  /// Waits until one of them has said something or is over, and no longer than that.
  static void wait_for_any(const std::vector<const PartProcess*>& processes, std::chrono::milliseconds time);

 private:
  struct System;
  std::unique_ptr<System> system_;
};

}  // namespace deskhost
