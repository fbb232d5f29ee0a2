#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace deskhost {

/// In a file's place: standard output where something is written, standard input where it is read.
inline constexpr const char* standard_file = "-";

/// A file that a command line names, and what names it there.
struct NamedFile {
  std::string named_by;
  std::string file;
};

/// Throws WrongUse where `output` is one of the others, under whatever name and be it there already or not.
/// Standard files, devices and pipes may be shared.
void refuse_lost_file(const NamedFile& output, const std::vector<NamedFile>& others);

/// A file that is written anew, or standard output. Throws WrongUse where it can't be opened, and for a named
/// pipe that nobody reads from. Without `finish`, or where that fails, no file stays: half a one would look
/// like a whole one.
class Output {
 public:
  Output(std::string file, std::ostream& standard_output);
  ~Output();
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  [[nodiscard]] std::ostream& stream() const noexcept { return *stream_; }
  /// Closes the file. Throws WrongUse where it couldn't be written to its end.
  void finish();

 private:
  void remove() noexcept;

  std::string file_;
  std::unique_ptr<std::ostream> own_;
  std::ostream* stream_;
};

/// Opens, lets `write` do its part, and finishes.
void write_output(const std::string& file, std::ostream& standard_output,
                  const std::function<void(std::ostream&)>& write);

}  // namespace deskhost
