#pragma once

#include <stdexcept>
#include <string>

namespace automation {

/// What can go wrong at run time under a text of its own; the texts are the same on every system.
enum class Error {
  none,  ///< a failure with a text from elsewhere (a host, a database)
  overflow,
  subscript_out_of_range,
  type_mismatch,
  bad_file_name,
  file_not_found,
  path_not_found,
  permission_denied,
  disk_full,
  device_error,
  invalid_argument,
  object_not_set,
  object_required,
  no_such_member,
  argument_missing,
  cannot_create_object,
  internal_error,
};

/// The text that a user is shown for `error`; empty for `Error::none`.
const char* text_of(Error error) noexcept;

/// The number that goes with the text; 0 for `Error::none`.
int number_of(Error error) noexcept;

/// The error that has this number; `Error::none` where none has.
Error error_numbered(int number) noexcept;

/// The one family of run-time failures: host calls, conversions, files, processes.
/// `what()` is the UTF-8 text that a user would be shown.
class Failure : public std::runtime_error {
 public:
  explicit Failure(Error error) : std::runtime_error(text_of(error)), error_(error) {}
  explicit Failure(const std::string& text) : std::runtime_error(text) {}
  Failure(Error error, const std::string& text) : std::runtime_error(text), error_(error) {}

  [[nodiscard]] Error error() const noexcept { return error_; }

 private:
  Error error_ = Error::none;
};

}  // namespace automation
