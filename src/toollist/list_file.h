#pragma once

#include <optional>
#include <string_view>

#include "automation/failure.h"
#include "platform/files.h"

namespace mQuorvexList {

/// The tool list file while it is written: lines in the system's code page that end with CR LF.
class ListFile {
 public:
  /// Closes what an earlier run left open; creates or empties the file. Throws Failure.
  void open(std::string_view path);
  /// Throws Failure. After a line that couldn't be written in whole no other one is, so that nothing is glued
  /// to its rest: each further line fails with the same failure.
  void write_line(std::string_view text);
  /// Harmless on a closed file; throws Failure where the last bytes can't be written, and is closed then too.
  void close();
  /// Throws the failure of the first line that isn't in the file in whole, if there was one since `open`.
  void require_complete() const;

 private:
  template <class Step>
  void remember_failure(Step&& step);

  platform::OutputFile file_;
  std::optional<automation::Failure> broken_;
};

/// The one list file of the thread.
ListFile& list_file();

}  // namespace mQuorvexList
