#pragma once

#include <string>
#include <string_view>

/// Files by the add-in's paths: UTF-8, backslashes, an optional drive letter. On posix "\" is mapped to "/",
/// a drive letter to the folder that QVESPRIT_DRIVE_C (and so on) names, and a name that differs from one on
/// disk only in case is found. Failures carry the text a user is shown: file not found, path not found,
/// permission denied, …
namespace platform {

/// A file or a folder of that path; blanks at the path's end don't count. Never fails.
bool file_exists(std::string_view path);

/// Whether a file (not a folder) of that path is there, where "*" in the path's last name stands for any
/// characters and "?" for one; "name.*" is also "name". Throws Failure where the folder is there and can't be
/// searched.
bool file_matches(std::string_view pattern);

/// Throws Failure; a file that isn't there is file_not_found.
void delete_file(std::string_view path);

/// All bytes of a file, read in one piece; no handle stays open. Throws Failure.
std::string read_file(std::string_view path);

/// A file that is written from its start; owns its handle.
class OutputFile {
 public:
  OutputFile() = default;
  /// Creates or empties the file; throws Failure.
  explicit OutputFile(std::string_view path);
  OutputFile(OutputFile&& other) noexcept;
  OutputFile& operator=(OutputFile&& other) noexcept;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  /// Closes without a report.
  ~OutputFile();

  [[nodiscard]] bool is_open() const noexcept { return handle_ != closed; }
  /// Writes the bytes as they are; throws Failure (disk full, …).
  void write(std::string_view bytes);
  /// Harmless on a closed file; throws Failure where the last bytes can't be written, and is closed then too.
  void close();

 private:
  static constexpr long long closed = -1;
  long long handle_ = closed;  // descriptor or system handle
};

/// Replaces the file as a whole: written beside it, flushed, renamed; permissions are kept. Throws Failure
/// and leaves the old file as it was.
void replace_file(std::string_view path, std::string_view bytes);

/// The current directory, without a closing separator; `drive` is a drive letter or 0 for the current one.
/// Empty where there is none.
std::string current_directory(char drive = 0);

/// `path` with every level's name as it stands on disk; empty where a level isn't found, unchanged for a path
/// that ends in ":\".
std::string long_path(std::string_view path);

/// The path as this system's own calls take it (posix: mapped as told above; Windows: unchanged), in UTF-8.
std::string native_path(std::string_view path);

}  // namespace platform
