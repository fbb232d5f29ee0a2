#pragma once

#include <memory>
#include <optional>
#include <string>

/// What tests need of the system that they run on. Files are named in UTF-8.
namespace testing_support {

extern const bool on_windows;
/// A Windows inside another system, with ways of its own: known_differences.h.
extern const bool on_wine;
/// ".exe", or nothing.
extern const char* const program_ending;

std::optional<std::string> variable(const std::string& name);
/// Sets an environment variable, or takes it away.
void set_variable(const std::string& name, const std::optional<std::string>& value);

/// Something that is otherwise for one scope.
class Otherwise {
 public:
  virtual ~Otherwise() = default;
  Otherwise() = default;
  Otherwise(const Otherwise&) = delete;
  Otherwise& operator=(const Otherwise&) = delete;
};

/// Gives a folder the drive "Q:"; a Windows has no drives to give, and the folder's own path stands for "Q:"
/// there.
class Drive {
 public:
  explicit Drive(std::string folder);
  ~Drive();
  Drive(const Drive&) = delete;
  Drive& operator=(const Drive&) = delete;

  /// The text with every "Q:" and "q:" as it is here.
  [[nodiscard]] std::string at(std::string text) const;

 private:
  std::string folder_;
};

/// The system's number format has that decimal sign, for the user and not for this process alone: such tests
/// run by themselves.
[[nodiscard]] std::unique_ptr<Otherwise> with_decimal_sign(char sign);

/// The hive of the current user is an empty one of the test's own; `folder` is the test's.
[[nodiscard]] std::unique_ptr<Otherwise> with_own_registry(const std::string& folder);

/// Makes a program that carries out `instructions`, a line each, the words separated by tabs:
///   copy FROM TO   "%1" stands for the first argument
///   report FILE    writes its arguments, each as "<argument>" and a line end; on Windows its whole command
///   line
///                  behind the program's name is one
///   exit STATUS
///   die            by a signal
void make_program(const std::string& file, const std::string& instructions);

}  // namespace testing_support
