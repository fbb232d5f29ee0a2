#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "automation/object.h"

namespace deskhost::check {

/// What was found and counted by one process of the check.
struct Report {
  std::vector<std::string> findings;
  std::uint64_t single = 0;   ///< host calls refused once
  std::uint64_t lasting = 0;  ///< host calls refused together with all that follow
};

/// Loads a component's file, or the registered one; the result makes its object.
using Load = std::function<std::function<automation::Ref()>(const std::string& file)>;

/// What a check's process has to itself.
struct Place {
  std::filesystem::path folder;
  std::filesystem::path component;  ///< its file
  bool is_registered = false;       ///< it is loaded as the class that is registered
  std::uint64_t seed = 1;
  Load load;
};

/// The checks of one kind, numbered from 0; they live in one process and are run in any order.
class Runner {
 public:
  virtual ~Runner() = default;
  Runner() = default;
  Runner(const Runner&) = delete;
  Runner& operator=(const Runner&) = delete;

  [[nodiscard]] virtual std::size_t count() const = 0;
  virtual void run(std::size_t index, Report& report) = 0;
};

/// Checks that belong together, under a name that a user can ask for.
struct Set {
  std::string name;
  std::function<std::unique_ptr<Runner>(const Place&)> begin;
  /// How many checks share a process.
  std::size_t batch = 1;
};

/// A row of the levels; a strictness takes in all levels up to its own.
struct Level {
  int strictness;
  const char* title;
  std::vector<Set> (*sets)();
};

std::vector<Set> connection_sets();
std::vector<Set> command_sets();
std::vector<Set> reconnection_sets();
std::vector<Set> import_refusal_sets();
std::vector<Set> other_refusal_sets();
std::vector<Set> lasting_refusal_sets();
std::vector<Set> file_fault_sets();
std::vector<Set> intrusion_sets();
std::vector<Set> random_action_sets();
std::vector<Set> random_byte_sets();

}  // namespace deskhost::check
