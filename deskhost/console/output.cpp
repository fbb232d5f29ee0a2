#include "deskhost/console/output.h"

#include <fstream>

#include "deskhost/session/session.h"
#include "deskhost/system/file_path.h"
#include "deskhost/system/pipe_end.h"

namespace deskhost {

Output::Output(std::string file, std::ostream& standard_output)
    : file_(std::move(file)), stream_(&standard_output) {
  if (file_ == standard_file) return;
  const PipeEnd held(path_of(file_));
  if (held.has_no_reader())
    throw WrongUse("\"" + file_ + "\" is a pipe that nobody reads from", "start its reader first");
  own_ = std::make_unique<std::ofstream>(path_of(file_), std::ios::binary);
  if (!*own_) throw WrongUse("\"" + file_ + "\" can't be written", "give a file in a folder that exists");
  stream_ = own_.get();
}

Output::~Output() = default;

void Output::finish() {
  if (!own_) return;
  if (!own_->flush()) {
    throw WrongUse("\"" + file_ + "\" couldn't be written to its end", "check the space where it stands");
  }
}

void write_output(const std::string& file, std::ostream& standard_output,
                  const std::function<void(std::ostream&)>& write) {
  Output output(file, standard_output);
  write(output.stream());
  output.finish();
}

}  // namespace deskhost
