#pragma once

#include <filesystem>

namespace deskhost {

/// The writing end of a named pipe, held so that it can be opened once more without waiting for a reader.
/// Nothing for a path that is no named pipe.
class PipeEnd {
 public:
  explicit PipeEnd(const std::filesystem::path& path);
  ~PipeEnd();
  PipeEnd(const PipeEnd&) = delete;
  PipeEnd& operator=(const PipeEnd&) = delete;

  [[nodiscard]] bool has_no_reader() const noexcept { return has_no_reader_; }

 private:
  int descriptor_ = -1;
  bool has_no_reader_ = false;
};

}  // namespace deskhost
